// frmGB: what happens when a row is selected or started, and the download of selected games.

#include "app/Globals.h"
#include "app/Translate.h"
#include "catalogue/Database.h"
#include "catalogue/DbError.h"
#include "catalogue/Recordset.h"
#include "controls/ui/SimpleReport.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseSettings.h"
#include "gamebase/GameDownload.h"
#include "gamebase/ui/frmGB.h"
#include "gamebase/ui/NetDownload.h"
#include "import/clsFileManager.h"
#include "launch/StartFile.h"

#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QImageReader>
#include <QLabel>
#include <QPixmap>

namespace vd::gamebase {

using app::Translate;

namespace {

qint64 number(const QVariant& v)
{
    return v.isNull() ? 0 : qint64(v.toString().toDouble());
}

// The window's side of a download: the transfer, Esc and the status panel.
class WindowHost : public DownloadHost
{
public:
    WindowHost(frmGB& form, bool& escPressed, bool& downloading)
        : m_form(form), m_esc(escPressed), m_downloading(downloading)
    {
        m_esc = false;
        m_downloading = true;
    }
    ~WindowHost() override { m_downloading = false; }

    bool DownloadFile(const QString& url, const QString& target) override
    {
        return FetchToFile(url, target);
    }
    bool escapePressed() override
    {
        QCoreApplication::processEvents();
        return m_esc;
    }
    void setStatus(const QString& text) override
    {
        m_form.setStatusText(text);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    void startGame() override { m_form.StartGame(QString(), 0); }
    void setBusy(bool busy) override
    {
        if (busy)
            QApplication::setOverrideCursor(Qt::WaitCursor);
        else
            while (QApplication::overrideCursor())
                QApplication::restoreOverrideCursor();
    }

private:
    frmGB& m_form;
    bool& m_esc;
    bool& m_downloading;
};

} // namespace

GameRow frmGB::selectedRow() const
{
    GameRow row;
    controls::SimpleReport* list = activeList();
    row.inMyFiles = iListMode == 1;
    row.view = m_view;
    row.selected = list->SelectedIndex() >= 0 && list->ItemCount() > 0;
    if (!row.selected)
        return row;
    controls::ReportEngine& engine = list->engine();
    if (row.inMyFiles) {
        row.id = number(engine.FieldValue(QStringLiteral("ID")));
        row.gbId = number(engine.FieldValue(QStringLiteral("GB_ID")));
    } else {
        row.gaId = number(engine.FieldValue(QStringLiteral("GA_ID")));
    }
    row.startId = lStartID;
    return row;
}

void frmGB::ShowScreenshots()
{
    const GameRow row = selectedRow();
    if (!row.selected) {
        for (QLabel* img : imgScr)
            img->hide();
        return;
    }
    QString relative;
    if (!row.inMyFiles) {
        relative = activeList()->engine().FieldValue(QStringLiteral("Scr")).toString();
        lblMsg->setText(activeList()->engine().FieldValue(4).toString());
    } else if (gGB && row.gbId > 0) {
        try {
            auto rs = gGB->openRecordset(
                QStringLiteral("Select ScrnshotFilename from Games where GA_ID=") +
                    QString::number(row.gbId),
                db::RecordsetType::Snapshot);
            if (!rs->eof() && !rs->value(0).isNull())
                relative = rs->value(0).toString();
        } catch (const db::DbError&) {
            relative.clear(); // a GameBase without the field shows no pictures
        }
    }
    if (relative.isEmpty())
        lblMsg->setText(Translate(QStringLiteral("Keine Screenshots vorhanden")));
    bool flag = !relative.isEmpty();
    for (int n = 0; n < int(imgScr.size()); ++n) {
        if (flag) {
            const QString file = ScreenshotFile(gScreenshots, relative, n);
            QImageReader reader(file);
            const QImage image = reader.read();
            if (image.isNull()) {
                flag = false;
            } else {
                const QSize box(fraScreenshots->width() - 20, fraScreenshots->height() / 3 - 10);
                QPixmap pixmap = QPixmap::fromImage(image);
                if (box.width() > 40 && box.height() > 40 &&
                    (pixmap.width() > box.width() || pixmap.height() > box.height()))
                    pixmap = pixmap.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation);
                imgScr[size_t(n)]->setPixmap(pixmap);
                imgScr[size_t(n)]->setProperty("file", file);
            }
        }
        imgScr[size_t(n)]->setVisible(flag);
    }
}

void frmGB::UpdateStartButtons()
{
    const GameRow row = selectedRow();
    lStartID = app::gDB ? StartIdFor(*app::gDB, row) : 0;
    buttons.value(QStringLiteral("Start"))->setEnabled(row.selected);
    buttons.value(QStringLiteral("Download"))
        ->setEnabled(row.selected && (iListMode == 0 || row.gbId > 0));
}

void frmGB::StartGame(const QString& profilKey, int mode)
{
    (void)mode;
    if (!m_fm || !app::gDB || !gGB)
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const GameStartResult result =
        gamebase::StartGame(*m_fm, *app::gDB, *gGB, selectedRow(), profilKey, gDownloadPath);
    QApplication::restoreOverrideCursor();
    if (!result.status.isEmpty())
        setStatusText(launch::StartStatusText(result.status));
    if (m_view == kGBViewLast || m_view == kGBViewTop)
        BuildView(m_view);
    markChanged();
}

void frmGB::DownloadGames(bool askPath, bool importNow)
{
    if (!m_fm || !app::gDB || !gGB || m_downloading)
        return;
    DownloadRequest request;
    controls::SimpleReport* list = activeList();
    const QString idField = iListMode == 0 ? QStringLiteral("GA_ID") : QStringLiteral("GB_ID");
    for (const controls::cListItem& item : list->SelectedItems()) {
        const qint64 id = number(list->engine().FieldValue(idField, item.Row));
        if (id > 0)
            request.gameIds.append(id);
    }
    if (request.gameIds.isEmpty())
        return;
    request.askPath = askPath;
    request.importNow = importNow;
    request.downloadFolder = gDownloadPath;
    request.archivFile = gArchivFile;
    request.archivOnlyGame = gArchivOnlyGame;
    request.startId = lStartID;
    request.startFolder = app::gAppPath;
    DownloadState state{m_downloadUrl, m_lastFolder};
    m_fm->InitCount();
    DownloadResult result;
    {
        WindowHost host(*this, m_escPressed, m_downloading);
        result = gamebase::DownloadGames(*gGB, *m_fm, request, state, host);
    }
    m_downloadUrl = state.baseUrl;
    m_lastFolder = state.lastFolder;
    m_addedFiles += int(result.filesAdded);
    m_addedEntries += int(result.entriesAdded);
    if (result.catalogueChanged) {
        markChanged();
        BuildView(m_view);
    }
}

} // namespace vd::gamebase
