// frmMain: the commands that change what the catalogue holds, by the view and the selection:
// deleting, user categories, the properties of a file, refreshing, copying the lists, showing
// a file in the file manager, and the MD5 sums and directory texts of the batch window.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "browser/FileCommands.h"
#include "browser/ui/frmC64File.h"
#include "browser/ui/frmCategory.h"
#include "browser/ui/frmFile.h"
#include "browser/ui/frmMain.h"
#include "controls/TreeItem.h"
#include "controls/ui/ReportView.h"
#include "controls/ui/SimpleReport.h"
#include "controls/ui/UserTree.h"
#include "import/BatchProcess.h"
#include "import/clsFileManager.h"
#include "import/ImportSettings.h"
#include "import/ui/frmProcess.h"
#include "platform/DialogService.h"
#include "platform/Files.h"

#include <QAction>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QUrl>

namespace vd::browser {

using app::Translate;

namespace {

// Asks the desktop's file manager to show the file selected in its folder; where no file
// manager answers on the session bus, the folder is opened instead.
void showInFileManager(const QString& path, QObject* context)
{
    const QUrl folder = QUrl::fromLocalFile(QFileInfo(path).absolutePath());
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        QDesktopServices::openUrl(folder);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    // Asynchronous: a file manager that is slow to start never holds up the window.
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, 5000), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [folder](QDBusPendingCallWatcher* w) {
                         if (w->isError())
                             QDesktopServices::openUrl(folder);
                         w->deleteLater();
                     });
}

QString plainCaption(const QAction* action)
{
    return action ? action->text().remove(QLatin1Char('&')) : QString();
}

} // namespace

void frmMain::connectFileCommands()
{
    setCommand(QStringLiteral("mnuDel"), [this] { mnuDel_Click(); });
    setCommand(QStringLiteral("mnuNewCat"), [this] { mnuNewCat_Click(); });
    setCommand(QStringLiteral("mnuDetails"), [this] { mnuDetails_Click(); });
    setCommand(QStringLiteral("mnuRefreshFile"), [this] { mnuRefreshFile_Click(); });
    setCommand(QStringLiteral("mnuCopyAll"), [this] { mnuCopy_Click(false); });
    setCommand(QStringLiteral("mnuCopySelection"), [this] { mnuCopy_Click(true); });
    setCommand(QStringLiteral("mnuFilepath"), [this] { mnuFilepath_Click(); });
    setCommand(QStringLiteral("mnuCreateMD5"), [this] { mnuCreateMD5_Click(); });
    setCommand(QStringLiteral("mnuDirFilepath"), [this] { exportDirectories(QString()); });
    setCommand(QStringLiteral("mnuDirSelect"), [this] {
        QString folder = platform::dialogs().chooseFolder(
            Translate(QStringLiteral("Dateipfad auswählen")), app::gDialogPath);
        if (folder.isEmpty())
            return;
        if (!folder.endsWith(QLatin1Char('/')))
            folder += QLatin1Char('/');
        exportDirectories(folder);
    });
    // A double click on a file of the files view shows its properties.
    connect(lstMainFiles, &controls::SimpleReport::itemDblClick, this, [this] {
        const QVariant id = lstMainFiles->engine().FieldValue(0);
        if (!id.isNull())
            showFileProperties(id.toLongLong());
    });
}

bool frmMain::treeHasFocus() const
{
    return !(lstMain->hasFocus() || lstMain->report().hasFocus());
}

QList<qint64> frmMain::selectedFileIds()
{
    QList<qint64> ids;
    for (const controls::cListItem& item : lstMainFiles->SelectedItems())
        if (!item.Key.isNull())
            ids << item.Key.toLongLong();
    return ids;
}

QList<qint64> frmMain::selectedEntryIds()
{
    QList<qint64> ids;
    for (const controls::cListItem& item : lstMain->SelectedItems())
        if (!item.Key.isNull())
            ids << item.Key.toLongLong();
    return ids;
}

void frmMain::mnuDel_Click()
{
    if (!app::gDB || !gFileManager)
        return;
    if (iViewMode == kViewMainFiles) {
        QString status;
        DeleteMainFiles(*gFileManager, selectedFileIds(), status);
        // Also after a failure: what was deleted before it is gone.
        if (!status.isEmpty()) {
            BuildView(iViewMode, 0, 0);
            ShowStatus(status);
        }
        return;
    }
    if (!treeHasFocus()) {
        const QList<qint64> ids = selectedEntryIds();
        bool deleted = false;
        if (ids.size() > 1)
            deleted = DeleteEntries(ids);
        else if (ids.size() == 1)
            deleted = DeleteSelected(ids.first(), lstMain->FieldValue(3).toString());
        if (deleted)
            BuildView(iViewMode, 0, 1); // the tree stays; its node's list is read again
        return;
    }
    const controls::TreeItemP item = treeMain->ready() ? treeMain->SelectedItem() : nullptr;
    if (!item || item->Level < 2)
        return;
    const qint64 key = item->Key.toLongLong();
    bool deleted = false;
    if (item->Level == 3)
        deleted = DeleteSelected(key, item->Caption);
    else if (iViewMode == kViewCategories)
        deleted = DeleteUserCategory(key, item->Caption);
    else if (iViewMode == kViewLastStarted || iViewMode == kViewTop100)
        deleted = DeleteChronicle(key, item->Caption);
    else
        deleted = DeleteSelected(-key, item->Caption);
    if (deleted)
        BuildView(iViewMode, 0, 0);
}

void frmMain::mnuNewCat_Click()
{
    if (!app::gDB || !gFileManager)
        return;
    const qint64 id = NewCategory(gFileManager->lLastCategoryID);
    if (id == 0)
        return;
    BuildView(kViewCategories, 0, 0);
    treeMain->SelectItem(QString::number(id), 2);
    UpdateActions(QString());
}

void frmMain::renameCategory(qint64 id, const QString& oldName)
{
    if (RenameCategory(id, oldName).isEmpty())
        return;
    // The node shows the new name where the tree sorts it.
    BuildView(kViewCategories, 0, 0);
    treeMain->SelectItem(QString::number(id), 2);
    UpdateActions(QString());
}

void frmMain::mnuDetails_Click()
{
    if (!app::gDB || !gFileManager)
        return;
    if (iViewMode == kViewCategories && treeHasFocus()) {
        const controls::TreeItemP item = treeMain->ready() ? treeMain->SelectedItem() : nullptr;
        if (item && item->Level == 2)
            renameCategory(item->Key.toLongLong(), item->Caption);
        return;
    }
    const qint64 tag = infoTag().toLongLong();
    if (iViewMode == kViewMainFiles && selectedFileIds().size() > 1) {
        // Several files: their entries take one user category.
        frmCategory dialog(*gFileManager, selectedFileIds(), this);
        dialog.exec();
        if (dialog.saved())
            BuildView(iViewMode, 0, 0);
        return;
    }
    if (tag < 0) {
        showFileProperties(-tag);
        return;
    }
    if (tag == 0)
        return;
    // The marked entries of the list, or the one entry of the tree.
    QList<qint64> ids = treeHasFocus() ? QList<qint64>() : selectedEntryIds();
    if (ids.isEmpty())
        ids << tag;
    frmC64File dialog(*gFileManager, ids, this);
    if (!dialog.loaded())
        return;
    dialog.exec();
    if (dialog.saved())
        BuildView(iViewMode, 0, 1);
}

void frmMain::showFileProperties(qint64 id)
{
    if (!gFileManager)
        return;
    frmFile dialog(*gFileManager, id, this);
    if (!dialog.loaded())
        return;
    dialog.exec();
    if (dialog.saved())
        BuildView(iViewMode, 0, 0);
}

void frmMain::mnuRefreshFile_Click()
{
    const qint64 tag = infoTag().toLongLong();
    if (!app::gDB || !gFileManager || tag >= 0)
        return;
    bool changed = false;
    const QString status = RefreshFile(*gFileManager, -tag, changed);
    if (changed)
        BuildView(iViewMode, 0, iViewMode == kViewMainFiles ? 0 : 1);
    if (!status.isEmpty())
        ShowStatus(status);
}

void frmMain::mnuCopy_Click(bool useSelection)
{
    if (iViewMode == kViewMainFiles)
        lstMainFiles->CopyToClipboard(useSelection);
    else
        lstMain->CopyToClipboard(useSelection);
    ShowStatus(plainCaption(m_entries.value(useSelection ? QStringLiteral("mnuCopySelection")
                                                         : QStringLiteral("mnuCopyAll"))));
}

void frmMain::mnuFilepath_Click()
{
    const QString path = FilePathOfTag(infoTag().toLongLong());
    if (!path.isEmpty() && platform::FileExistsMsg(path))
        showInFileManager(path, this);
}

void frmMain::mnuCreateMD5_Click()
{
    const QList<qint64> ids = iViewMode == kViewMainFiles ? selectedFileIds() : QList<qint64>();
    if (ids.isEmpty() || !gFileManager) {
        platform::dialogs().msgBox(Translate(QStringLiteral("Bitte Dateien markieren...")),
                                   platform::vbInformation);
        return;
    }
    gFileManager->options = import::importOptionsInForce();
    const auto outcome =
        import::frmProcess::Run(*gFileManager, this, import::kModeMd5, QString(), ids);
    if (outcome.iMode == import::kModeChanged)
        BuildView(iViewMode, 0, 0);
    ShowStatus(outcome.sResultText);
}

void frmMain::exportDirectories(const QString& folder)
{
    const QList<qint64> ids = iViewMode == kViewMainFiles ? selectedFileIds() : QList<qint64>();
    if (ids.isEmpty() || !gFileManager) {
        platform::dialogs().msgBox(Translate(QStringLiteral("Bitte Dateien markieren...")),
                                   platform::vbInformation);
        return;
    }
    const auto outcome =
        import::frmProcess::Run(*gFileManager, this, import::kModeExportDirs, folder, ids);
    ShowStatus(outcome.sResultText);
}

} // namespace vd::browser
