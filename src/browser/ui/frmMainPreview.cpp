// frmMain: the preview of the selected row in the pane and in frmPreview, and the flip-list
// window with the commands that open it.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "app/ui/CbmFont.h"
#include "app/WindowPos.h"
#include "browser/Preview.h"
#include "browser/ui/frmMain.h"
#include "browser/ui/frmPreview.h"
#include "browser/ui/PictureFile.h"
#include "browser/ui/PreviewPane.h"
#include "catalogue/DbError.h"
#include "catalogue/RowOps.h"
#include "controls/ui/ReportView.h"
#include "controls/ui/SimpleReport.h"
#include "launch/ui/frmFlipList.h"

#include <exception>
#include <QAction>
#include <QFrame>
#include <QLabel>
#include <QVBoxLayout>

namespace vd::browser {

namespace {

constexpr int kFlipListOffset = 60; // pixels right of and below the main window's corner
constexpr char kShownCatalogue[] = "shownCatalogue";

} // namespace

void frmMain::connectPreviewCommands()
{
    auto* layout = new QVBoxLayout(Container);
    layout->setContentsMargins(4, 4, 4, 4);
    m_previewPane = new PreviewPane(false, Container);
    m_previewPane->setObjectName(QStringLiteral("previewPane"));
    layout->addWidget(m_previewPane);
    connect(m_previewPane, &PreviewPane::rowActivated, this,
            [this](qint64 key) { StartSelected(QString(), qint32(key)); });
    setCommand(QStringLiteral("mnuOpenPreview"), [this] { mnuOpenPreview_Click(); });
    setCommand(QStringLiteral("mnuFlipList"), [this] { ShowFlipList(0, QString()); });
    setCommand(QStringLiteral("mnuAddToFlipList"), [this] { mnuAddToFlipList_Click(); });
}

void frmMain::applyPreviewLook()
{
    const QFont font = app::cbmFont(app::gFontName, app::gFontSize);
    const QColor fore = settingsColor(app::gPreviewForeColor);
    const QColor back = settingsColor(app::gPreviewBackColor);
    const QColor select = settingsColor(app::gPreviewSelectColor);
    QPalette colours = Container->palette();
    colours.setColor(QPalette::Window, back);
    Container->setPalette(colours);
    m_previewPane->setLook(font, fore, back, select);
    if (m_previewWindow) {
        m_previewWindow->setPalette(colours);
        m_previewWindow->pane()->setLook(font, fore, back, select);
    }
}

void frmMain::mnuOpenPreview_Click()
{
    if (!m_entries.value(QStringLiteral("mnuOpenPreview"))->isChecked()) {
        if (m_previewWindow)
            m_previewWindow->hide();
        return;
    }
    ShowPreview(true);
}

void frmMain::ShowPreview(bool force)
{
    const bool pane = m_entries.value(QStringLiteral("mnuPreview"))->isChecked();
    const bool window = m_entries.value(QStringLiteral("mnuOpenPreview"))->isChecked();
    if ((!pane && !window) || !app::gDB || !gFileManager)
        return;
    if (window && !m_previewWindow) {
        m_previewWindow = new frmPreview(this);
        connect(m_previewWindow, &frmPreview::PreviewFileStart, this, [this](qint32 id) {
            StartSelected(QString(), id);
        }); // PreviewStart_PreviewFileStart
        connect(m_previewWindow, &frmPreview::FormIsHiding, this, [this] {
            // PreviewStart_FormIsHiding: the window was closed by its user.
            m_entries.value(QStringLiteral("mnuOpenPreview"))->setChecked(false);
        });
        m_previewPane->forgetContainer();
        force = true;
    }
    if (window && m_previewWindow->isHidden()) {
        m_previewWindow->show();
        force = true;
    }
    applyPreviewLook();
    // Ids are those of one catalogue: after another was opened nothing on show is kept.
    if (m_previewPane->property(kShownCatalogue).toString() != app::gDatabasePath) {
        m_previewPane->setProperty(kShownCatalogue, app::gDatabasePath);
        force = true;
    }
    const qint64 id = infoTag().toLongLong();
    if (id == 0)
        return;
    try {
        const qint64 container = previewContainer(id);
        if (container == 0)
            return;
        if (container == m_previewPane->container() && !force) {
            m_previewPane->selectKey(id);
            if (window)
                m_previewWindow->pane()->selectKey(id);
            return;
        }
        const PreviewContent content = readPreview(*gFileManager, container);
        if (content.kind == PreviewKind::FlipList) {
            ShowFlipList(content.flipListId, QString());
            return;
        }
        QImage picture;
        QString pictureMessage;
        if (content.kind == PreviewKind::Picture)
            picture = LoadPictureFile(content.file, pictureMessage);
        const QList<PreviewPane*> panes =
            window ? QList<PreviewPane*>{m_previewPane, m_previewWindow->pane()}
                   : QList<PreviewPane*>{m_previewPane};
        for (PreviewPane* p : panes) {
            p->showContent(content);
            if (content.kind == PreviewKind::Picture) {
                if (picture.isNull())
                    p->setPictureMessage(pictureMessage);
                else
                    p->setPicture(picture);
            }
            p->selectKey(id);
        }
        if (window)
            m_previewWindow->updateCaption();
    } catch (const db::DbError& e) {
        m_previewPane->label()->setText(
            QStringLiteral("%1-%2").arg(e.number()).arg(e.description()));
    } catch (const std::exception& e) {
        m_previewPane->label()->setText(QString::fromLocal8Bit(e.what()));
    }
}

void frmMain::ShowFlipList(qint64 id, const QString& path)
{
    if (!m_flipList) {
        m_flipList = new launch::frmFlipList(gFileManager, this);
        connect(m_flipList, &launch::frmFlipList::PreviewFileStart, this, [this](qint32 listId) {
            StartSelected(QString(), listId);
        }); // FlipList_PreviewFileStart
        connect(m_flipList, &launch::frmFlipList::catalogueChanged, this,
                [this] { BuildView(0, 0, 0); });
        connect(m_flipList, &launch::frmFlipList::started, this,
                [this](const QString& status) { ShowStatus(status); });
        if (app::windowEntry(m_flipList->objectName()).isEmpty())
            m_flipList->move(frameGeometry().topLeft() + QPoint(kFlipListOffset, kFlipListOffset));
    }
    if (m_flipList->isHidden())
        m_flipList->show();
    m_flipList->raise();
    m_flipList->FillList(id, path);
}

void frmMain::mnuAddToFlipList_Click()
{
    const qint64 id = infoTag().toLongLong();
    if (id == 0)
        return;
    QString path;
    try {
        // A selected entry stands for its container; a file is its own row.
        const qint64 container = previewContainer(id);
        path = catalogue::GetDbValue(QStringLiteral("tPath"), QStringLiteral("Category"),
                                     QStringLiteral("ID=") + QString::number(container));
    } catch (const std::exception&) {
        return;
    }
    if (!path.isEmpty())
        ShowFlipList(0, path);
}

void frmMain::closePreviewWindows()
{
    // Closing at exit is no choice of the user: mnuOpenPreview keeps its check for next time.
    if (m_previewWindow) {
        m_previewWindow->disconnect(this);
        m_previewWindow->close();
    }
    if (m_flipList)
        m_flipList->close();
}

} // namespace vd::browser
