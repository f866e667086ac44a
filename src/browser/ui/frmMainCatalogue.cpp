// frmMain: opening and creating catalogues, the recent lists, the menu toggles, and which
// commands a catalogue enables.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Startup.h"
#include "app/Translate.h"
#include "browser/ui/frmMain.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "controls/ui/UserTree.h"
#include "import/clsFileManager.h"
#include "import/ui/frmProcess.h"
#include "platform/DialogService.h"
#include "platform/Files.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QFrame>
#include <QLabel>
#include <QMenu>
#include <QToolBar>

namespace vd::browser {

using app::Translate;

void frmMain::OpenCatalogue(const QString& path, bool& ok)
{
    ok = false;
    if ((path.isEmpty() || path == app::gDatabasePath) && !bFirstActivate)
        return;
    if (!platform::FileExists(path)) {
        platform::dialogs().msgBox(
            Translate(QStringLiteral("Die Datenbank liegt nicht im Pfad: ")) + path,
            platform::vbCritical);
        if (app::gDatabases.removeAll(path) > 0)
            ArrangeRecentMenu(app::gDatabases, QStringLiteral("OpenDB"));
        enableByCatalogue();
        return;
    }
    SaveColumnLayout();
    QString opened = path;
    // An old catalogue's upgrade shows the batch window of mode 6 while it runs.
    std::unique_ptr<platform::Progress> upgrade;
    if (gFileManager)
        upgrade = import::frmProcess::UpgradeProgress(*gFileManager, this);
    const bool opening =
        catalogue::OpenCatalogueFile(opened, upgrade ? *upgrade : platform::noProgress());
    upgrade.reset();
    if (opening) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        app::gDatabasePath = opened;
        showCaption();
        ShowStatus(QFileInfo(opened).fileName());
        ok = true;
        // The tree and the lists take gDB, the importer counts its rows and lvViews selects
        // the row of the view here, with those subsystems.
        if (gFileManager)
            gFileManager->InitCount(); // what counts as new starts here
        BuildView(0, 0, 0);
        if (!app::gDatabases.contains(app::gDatabasePath)) {
            app::AddRecent(app::gDatabases, app::gDatabasePath);
            ArrangeRecentMenu(app::gDatabases, QStringLiteral("OpenDB"));
        }
        // The preview is reset here with the preview pane.
        QApplication::restoreOverrideCursor();
    }
    enableByCatalogue();
}

void frmMain::NewDB(bool& ok)
{
    ok = false;
    const QString path = catalogue::CreateCatalogue();
    if (!path.isEmpty())
        OpenCatalogue(path, ok);
}

void frmMain::OpenCatalogueDialog(const QString& path)
{
    if (path.isEmpty())
        return;
    bool ok = false;
    OpenCatalogue(path, ok);
    if (ok)
        app::deleteTempFiles(); // an open frmGB is refreshed here with the GameBase window
}

void frmMain::mnuNewDB_Click()
{
    bool ok = false;
    NewDB(ok);
}

void frmMain::mnuOpenDB_Click()
{
    const QString start = app::gDatabasePath.isEmpty()
                              ? app::gDialogPath
                              : QFileInfo(app::gDatabasePath).absolutePath();
    const QString path =
        platform::dialogs().openFile(Translate(QStringLiteral("Datenbank öffnen")),
                                     Translate(QStringLiteral("Datenbank")) + QStringLiteral("|*") +
                                         catalogue::kCatalogueExtension + QStringLiteral(";*.mdb"),
                                     start);
    OpenCatalogueDialog(path);
}

void frmMain::mnuExit_Click()
{
    close();
}

void frmMain::mnuToggleToolbar_Click()
{
    tlbMain->setVisible(m_entries.value(QStringLiteral("mnuToggleToolbar"))->isChecked());
}

void frmMain::mnuHideTree_Click()
{
    treeMain->setVisible(!m_entries.value(QStringLiteral("mnuHideTree"))->isChecked());
}

void frmMain::mnuPreview_Click()
{
    Container->setVisible(m_entries.value(QStringLiteral("mnuPreview"))->isChecked());
    ShowPreview(true);
}

void frmMain::enableByCatalogue()
{
    const bool on = app::gDB != nullptr;
    for (const char* name :
         {"mnuAddDir", "mnuAddFile", "mnuFlipList", "mnuCompactDB", "mnuCheckFiles", "mnuFilter",
          "mnuGB", "mnuExtras", "mnuOpenPreview", "mnuPreview", "mnuView0", "mnuView1", "mnuView2",
          "mnuView3", "mnuView4", "mnuView5"})
        setEntryEnabled(QString::fromUtf8(name), on);
    SetSearchEnabled(on);
    for (const char* key : {"AddFile", "AddDir", "Action", "GB", "Filter"})
        setButtonEnabled(QString::fromUtf8(key), on);
    setEntryEnabled(QStringLiteral("mnuCreateMD5"), on && iViewMode == 2);
    setEntryEnabled(QStringLiteral("mnuSaveDir"), on && iViewMode == 2);
    // After an opening nothing is new yet.
    setEntryEnabled(QStringLiteral("mnuAddToFlipList"), false);
    chkNewFiles->setEnabled(false);
    if (!on)
        UpdateActions(QString());
}

void frmMain::ArrangeRecentMenu(const QStringList& collection, const QString& buttonKey)
{
    QMenu* menu = m_buttons.value(buttonKey)->menu();
    QList<QAction*> entries = menu->actions();
    while (entries.size() > collection.size())
        delete entries.takeLast();
    while (entries.size() < collection.size()) {
        QAction* entry = menu->addAction(QString());
        connect(entry, &QAction::triggered, this,
                [this, entry, buttonKey] { recentChosen(buttonKey, entry->data().toString()); });
        entries.append(entry);
    }
    for (qsizetype i = 0; i < collection.size(); ++i) {
        QString caption = collection[i];
        entries[i]->setText(caption.replace(QLatin1Char('&'), QStringLiteral("&&")));
        entries[i]->setData(collection[i]);
    }
}

void frmMain::arrangeRecentMenus()
{
    ArrangeRecentMenu(app::gDatabases, QStringLiteral("OpenDB"));
    ArrangeRecentMenu(app::gDialogs, QStringLiteral("AddDir"));
    ArrangeRecentMenu(app::gDialogs, QStringLiteral("AddFile"));
}

void frmMain::recentChosen(const QString& buttonKey, const QString& path)
{
    if (buttonKey == QLatin1String("AddDir")) {
        mnuAddDir_Click(path); // imports that folder at once
        return;
    }
    if (buttonKey == QLatin1String("AddFile")) {
        mnuAddFile_Click(path); // the file dialog starts there
        return;
    }
    OpenCatalogueDialog(path);
    if (app::gDatabasePath == path) {
        app::AddRecent(app::gDatabases, path);
        ArrangeRecentMenu(app::gDatabases, QStringLiteral("OpenDB"));
    }
}

} // namespace vd::browser
