#include "launch/ui/frmFlipList.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "app/ui/IconSet.h"
#include "app/ui/TranslateForm.h"
#include "app/ui/WindowGeometry.h"
#include "catalogue/Database.h"
#include "catalogue/DbError.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "import/clsFileManager.h"
#include "import/ImportOptions.h"
#include "launch/FlipFile.h"
#include "platform/DialogService.h"

#include <QAction>
#include <QFileInfo>
#include <QHeaderView>
#include <QHideEvent>
#include <QLabel>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace vd::launch {

using app::Translate;
using catalogue::ValueText;

namespace {

const QString kArchiveKeys = QStringLiteral(".ZIP;.RAR;.7Z;.CAB");
const QString kVfl = QStringLiteral(".VFL");

struct ToolEntry
{
    const char* key;
    const char* caption;
};

constexpr ToolEntry kTools[] = {
    {"cmdNew", "Neu"},         {"cmdDelete", "Entfernen"}, {"cmdUp", "Nach oben"},
    {"cmdDown", "Nach unten"}, {"cmdSave", "Speichern"},   {"cmdStart", "Starten"},
};

} // namespace

QString flipRowIconKey(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix();
    const QString ext = suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix.toUpper();
    // A substring test on purpose: a file without an extension counts as an archive too.
    return kArchiveKeys.contains(ext) ? QStringLiteral("ZIP") : ext;
}

QString flipListFileName(const QString& chosen)
{
    if (chosen.toUpper().endsWith(kVfl))
        return chosen;
    return chosen + QStringLiteral(".vfl");
}

frmFlipList::frmFlipList(import::clsFileManager* fm, QWidget* parent)
    : QWidget(parent, Qt::Window), m_fm(fm)
{
    setObjectName(QStringLiteral("frmFlipList"));
    setWindowTitle(Translate(QStringLiteral("Flipliste")));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    buildToolbar();
    layout->addWidget(tbListe);
    lblFile = new QLabel(this);
    lblFile->setObjectName(QStringLiteral("lblFile"));
    lblFile->setTextFormat(Qt::PlainText);
    layout->addWidget(lblFile);
    lstFiles = new QTreeWidget(this);
    lstFiles->setObjectName(QStringLiteral("lstFiles"));
    lstFiles->setColumnCount(3);
    lstFiles->setHeaderLabels(
        {Translate(QStringLiteral("Datei")), QStringLiteral("Path"), QStringLiteral("Icon")});
    lstFiles->setColumnHidden(kColPath, true);
    lstFiles->setColumnHidden(kColIcon, true);
    lstFiles->setRootIsDecorated(false);
    lstFiles->setUniformRowHeights(true);
    lstFiles->setSelectionMode(QAbstractItemView::SingleSelection);
    lstFiles->header()->setStretchLastSection(true);
    connect(lstFiles, &QTreeWidget::currentItemChanged, this, [this] { UpdateButtons(); });
    connect(lstFiles, &QTreeWidget::itemSelectionChanged, this, [this] { UpdateButtons(); });
    layout->addWidget(lstFiles, 1);
    app::RestoreWindowPos(
        *this, app::FormDesign{objectName(), kDesignWidthTwips, kDesignHeightTwips, false});
    UpdateButtons();
    lblFile->setProperty(app::ui::kNoTranslate, true); // the path of the list's file
    app::ui::TranslateForm(this, true);
}

frmFlipList::~frmFlipList() = default;

void frmFlipList::buildToolbar()
{
    tbListe = new QToolBar(this);
    tbListe->setObjectName(QStringLiteral("tbListe"));
    tbListe->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    const QHash<QString, QStyle::StandardPixmap> icons = {
        {QStringLiteral("cmdNew"), QStyle::SP_FileIcon},
        {QStringLiteral("cmdDelete"), QStyle::SP_TrashIcon},
        {QStringLiteral("cmdUp"), QStyle::SP_ArrowUp},
        {QStringLiteral("cmdDown"), QStyle::SP_ArrowDown},
        {QStringLiteral("cmdSave"), QStyle::SP_DialogSaveButton},
        {QStringLiteral("cmdStart"), QStyle::SP_MediaPlay}};
    const QHash<QString, void (frmFlipList::*)()> handlers = {
        {QStringLiteral("cmdNew"), &frmFlipList::cmdNew},
        {QStringLiteral("cmdDelete"), &frmFlipList::cmdDelete},
        {QStringLiteral("cmdUp"), &frmFlipList::cmdUp},
        {QStringLiteral("cmdDown"), &frmFlipList::cmdDown},
        {QStringLiteral("cmdSave"), &frmFlipList::cmdSave},
        {QStringLiteral("cmdStart"), &frmFlipList::cmdStart}};
    for (const ToolEntry& t : kTools) {
        const QString key = QString::fromUtf8(t.key);
        QAction* action = tbListe->addAction(style()->standardIcon(icons.value(key)),
                                             Translate(QString::fromUtf8(t.caption)));
        action->setObjectName(key);
        connect(action, &QAction::triggered, this, handlers.value(key));
    }
}

QAction* frmFlipList::command(const QString& key) const
{
    return tbListe->findChild<QAction*>(key, Qt::FindDirectChildrenOnly);
}

void frmFlipList::FillList(qint64 id, const QString& path)
{
    if (id != 0) {
        clearList();
        sListFile.clear();
        bCatalogued = false;
        m_categoryId = 0;
        if (!app::gDB)
            return;
        try {
            const auto rs = app::gDB->openRecordset(
                QStringLiteral("Select * From Category where ID=") + QString::number(id),
                db::RecordsetType::Snapshot);
            if (rs->eof())
                return;
            QString file = ValueText(rs->value(QStringLiteral("tPath")));
            const QString unpack = ValueText(rs->value(QStringLiteral("tUnpackPath")));
            // A list inside an archive is read from its extracted copy.
            if (!unpack.isEmpty() && m_fm)
                file = m_fm->ExtractFileFromArchiv(ValueText(rs->value(QStringLiteral("tFile"))),
                                                   unpack, file);
            sListFile = file;
            bCatalogued = true;
            m_categoryId = id;
            lblFile->setText(ValueText(rs->value(QStringLiteral("tFile"))));
            for (const QString& p : ReadFlipFile(file))
                AddListRow(p);
        } catch (const db::DbError& e) {
            platform::dialogs().msgBox(e.description());
        }
        selectRow(0);
        setChanged(false);
    } else if (!path.isEmpty()) {
        AddListRow(path);
        selectRow(lstFiles->topLevelItemCount() - 1);
        setChanged(true);
    } else {
        cmdNew();
    }
}

void frmFlipList::AddListRow(const QString& path)
{
    const QString key = flipRowIconKey(path);
    auto* item = new QTreeWidgetItem(QStringList{QFileInfo(path).fileName(), path, key});
    item->setIcon(kColFile, app::IconSet::keyIcon(key));
    item->setToolTip(kColFile, path);
    lstFiles->addTopLevelItem(item);
    UpdateButtons();
}

QStringList frmFlipList::paths() const
{
    QStringList out;
    for (int i = 0; i < lstFiles->topLevelItemCount(); ++i)
        out << lstFiles->topLevelItem(i)->text(kColPath);
    return out;
}

void frmFlipList::clearList()
{
    lstFiles->clear();
    UpdateButtons();
}

void frmFlipList::cmdNew()
{
    clearList();
    lblFile->clear();
    sListFile.clear();
    bCatalogued = false;
    m_categoryId = 0;
    setChanged(false);
}

void frmFlipList::cmdDelete()
{
    const int selected = selectedRow();
    if (selected < 0)
        return;
    QStringList keep = paths();
    keep.removeAt(selected);
    clearList();
    for (const QString& p : keep)
        AddListRow(p);
    selectRow(0);
    setChanged(true);
}

void frmFlipList::cmdUp()
{
    const int row = selectedRow();
    if (row <= 0)
        return;
    swapRows(row, row - 1);
    selectRow(row - 1);
    setChanged(true);
}

void frmFlipList::cmdDown()
{
    const int row = selectedRow();
    if (row < 0 || row + 1 >= lstFiles->topLevelItemCount())
        return;
    swapRows(row, row + 1);
    selectRow(row + 1);
    setChanged(true);
}

void frmFlipList::swapRows(int a, int b)
{
    QTreeWidgetItem* first = lstFiles->topLevelItem(a);
    QTreeWidgetItem* second = lstFiles->topLevelItem(b);
    for (const int column : {int(kColFile), int(kColPath), int(kColIcon)}) {
        const QString text = first->text(column);
        first->setText(column, second->text(column));
        second->setText(column, text);
    }
    const QIcon icon = first->icon(kColFile);
    first->setIcon(kColFile, second->icon(kColFile));
    second->setIcon(kColFile, icon);
    first->setToolTip(kColFile, first->text(kColPath));
    second->setToolTip(kColFile, second->text(kColPath));
}

void frmFlipList::cmdSave()
{
    QString fileName = sListFile;
    if (fileName.isEmpty()) {
        fileName =
            platform::dialogs().saveFile(Translate(QStringLiteral("Flipliste speichern")),
                                         QStringLiteral("VFL (*.vfl)|*.vfl"), app::gDialogPath);
        if (fileName.isEmpty())
            return;
        fileName = flipListFileName(fileName);
    }
    if (!CreateFlipFile(fileName, paths()))
        return;
    sListFile = fileName;
    setChanged(false);
    if (bCatalogued)
        return;
    lblFile->setText(QFileInfo(fileName).fileName());
    catalogueList(fileName);
}

// The saved list is read into the catalogue as a file of its own (a new one, or its rows
// refreshed when it was saved before).
bool frmFlipList::catalogueList(const QString& fileName)
{
    if (!m_fm || !app::gDB)
        return false;
    try {
        const qint64 id =
            m_fm->LoadFile(QFileInfo(fileName).fileName(), fileName,
                           import::kFlagNamedFile | import::kFlagRefresh, {}, false, 0);
        if (id != 0)
            emit catalogueChanged();
        return id != 0;
    } catch (const db::DbError& e) {
        platform::dialogs().msgBox(
            QStringLiteral("Load error: %1-%2").arg(e.number()).arg(e.description()));
    } catch (const std::exception& e) {
        platform::dialogs().msgBox(QStringLiteral("Load error: 0-") +
                                   QString::fromLocal8Bit(e.what()));
    }
    return false;
}

void frmFlipList::cmdStart()
{
    if (bCatalogued) {
        emit PreviewFileStart(qint32(-m_categoryId));
        return;
    }
    const QString status = StartFlipList(paths());
    if (!status.isEmpty())
        emit started(status);
}

void frmFlipList::setChanged(bool changed)
{
    m_changed = changed;
    UpdateButtons();
}

int frmFlipList::selectedRow() const
{
    QTreeWidgetItem* item = lstFiles->currentItem();
    return item && item->isSelected() ? lstFiles->indexOfTopLevelItem(item) : -1;
}

void frmFlipList::selectRow(int row)
{
    if (row >= 0 && row < lstFiles->topLevelItemCount())
        lstFiles->setCurrentItem(lstFiles->topLevelItem(row));
    UpdateButtons();
}

void frmFlipList::UpdateButtons()
{
    if (!tbListe)
        return;
    const int count = lstFiles ? lstFiles->topLevelItemCount() : 0;
    const int row = lstFiles ? selectedRow() : -1;
    command(QStringLiteral("cmdDelete"))->setEnabled(row >= 0);
    command(QStringLiteral("cmdUp"))->setEnabled(row > 0);
    command(QStringLiteral("cmdDown"))->setEnabled(row >= 0 && row + 1 < count);
    // A list is saved when it has rows and differs from its file (or has none yet).
    command(QStringLiteral("cmdSave"))->setEnabled(count > 0 && (m_changed || sListFile.isEmpty()));
    command(QStringLiteral("cmdStart"))->setEnabled(count > 0);
}

void frmFlipList::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
        app::SaveWindowPos(*this, objectName());
}

} // namespace vd::launch
