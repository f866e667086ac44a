// frmMain: the load, the first activation and the closing of the main window.

#include "browser/ui/frmMain.h"

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/SettingsWriter.h"
#include "app/Startup.h"
#include "app/Translate.h"
#include "app/ui/WindowGeometry.h"
#include "browser/ui/SearchTimer.h"
#include "catalogue/Catalogue.h"
#include "catalogue/DbError.h"
#include "controls/ui/UserTree.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseSettings.h"
#include "gamebase/ui/frmGB.h"
#include "import/clsFileManager.h"
#include "import/ui/frmProcess.h"
#include "launch/Profiles.h"
#include "platform/DialogService.h"
#include "setup/ui/frmWizard.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFrame>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>

namespace vd::browser {

using app::Translate;

frmMain::frmMain(QWidget* parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmMain"));
    setMinimumSize(int(std::ceil(kMinWidthTwips / app::kTwipsPerPixel)),
                   int(std::ceil(kMinHeightTwips / app::kTwipsPerPixel)));
    buildMenus();
    buildToolbar();
    buildPanes();
    buildStatusBar();
    connectCommands();
    connectWindowMenus();
    sSearchText = QStringList{QString(), QString(), QString(), QStringLiteral("0")};
    Form_Load();
}

frmMain::~frmMain()
{
    app::releaseCbmFont(m_font);
}

void frmMain::Form_Load()
{
    try {
        loadSteps();
    } catch (const db::DbError& e) {
        platform::dialogs().msgBox(
            QStringLiteral("Load error: %1-%2").arg(e.number()).arg(e.description()));
    } catch (const std::exception& e) {
        platform::dialogs().msgBox(QStringLiteral("Load error: 0-") +
                                   QString::fromLocal8Bit(e.what()));
    }
    enableByCatalogue();
    enableWebPages();
    showCaption();
}

// The steps of the load, in their designed order. The keys are read by loadSettings() at
// once; each step below applies its part.
void frmMain::loadSteps()
{
    app::loadSettings();
    setupFont();                             // 1, 2
    QPalette preview = Container->palette(); // 3: the preview pane takes the background colour
    const qint64 back = app::gPreviewBackColor;
    preview.setColor(QPalette::Window,
                     QColor(int(back & 0xFF), int((back >> 8) & 0xFF), int((back >> 16) & 0xFF)));
    Container->setPalette(preview);
    bFirstActivate = true;              // 4
    createFileManager();                // 5
    if (!QDir(app::gTempPath).exists()) // 6: Lang and Tools are never created
        QDir().mkpath(app::gTempPath);
    // 7, 8: the white toolbar and its images are made with the toolbar.
    arrangeRecentMenus();       // 9 to 11: the version and the recent lists were read with the keys
    loadGameBaseSettings();     // 12
    loadLanguageMenu();         // 13
    SetupLanguage();            // 14
    setupSideLists();           // 15
    loadCatalogueFilters();     // 16
    selectLastFilterRow();      // 16: the row of the last run
    loadGameBaseFilters();      // 17
    iViewMode = app::gViewMode; // 18
    m_entries.value(QStringLiteral("mnuTreeOhnePlusMinus"))->setChecked(app::gTreeSubItems); // 19
    m_entries.value(QStringLiteral("mnuPreview"))->setChecked(app::gPreview);
    m_entries.value(QStringLiteral("mnuOpenPreview"))->setChecked(app::gPreviewWindow);
    // 20: the four layouts and the list's columns live in app::gListLayouts, gMainListColumns.
    loadEmulatorsAndProfiles(); // 21
    loadExtensionProfiles();    // 22
    // 23: gArchiveExtensions was set with the keys.
    app::RestoreWindowPos(*this, app::FormDesign{QStringLiteral("frmMain"), kDesignWidthTwips,
                                                 kDesignHeightTwips, false});   // 24
    m_entries.value(QStringLiteral("mnuHideTree"))->setChecked(app::gHideTree); // 25
    treeMain->setVisible(!app::gHideTree);
    m_entries.value(QStringLiteral("mnuToggleToolbar"))->setChecked(app::gShowToolbar);
    tlbMain->setVisible(app::gShowToolbar);
    setupImageLists(); // 26
    // 27: the splitters take their positions when the window has its size (showEvent).
    Container->setVisible(app::gPreview);
    moTimer = new SearchTimer(800, this); // 28
    connect(moTimer, &SearchTimer::timeout, this, &frmMain::moTimer_Timer);
}

void frmMain::setupFont()
{
    m_font = app::resolveCbmFont(app::gFontName, app::gToolsPath + QStringLiteral("CBM.ttf"));
    app::gFontName = m_font.name;
    // gFontSize is held to 6..20 as it is read.
}

void frmMain::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (!m_splitsApplied)
        applySplitPositions();
    if (bFirstActivate && !m_unloaded)
        QTimer::singleShot(0, this, &frmMain::Form_Activate);
}

void frmMain::Form_Activate()
{
    if (!bFirstActivate || m_unloaded || m_activating)
        return;
    m_activating = true;
    QCoreApplication::processEvents(); // the window is drawn first
    m_activating = false;
    bool ok = false;
    app::CleanTempFolder(ok);
    if (!ok) {
        // The user gave up: the program ends, and as the first activation did not finish,
        // nothing is saved.
        app::gDatabasePath.clear();
        endWaitCursor();
        close();
        return;
    }
    if (!app::gDatabasePath.isEmpty()) {
        bool opened = false;
        OpenCatalogue(app::gDatabasePath, opened);
        if (!opened)
            app::gDatabasePath.clear();
        endWaitCursor();
    } else {
        endWaitCursor();
        if (app::isFirstRun())
            showFirstRunWizard();
    }
    bFirstActivate = false;
    showCaption();
}

void frmMain::endWaitCursor()
{
    if (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();
}

void frmMain::closeEvent(QCloseEvent* event)
{
    if (!m_unloaded) {
        Form_QueryUnload();
        Form_Unload();
        m_unloaded = true;
    }
    event->accept();
}

void frmMain::Form_QueryUnload()
{
    closeSideWindows();
    // From here on errors are ignored: the closing goes on.
    try {
        gamebase::CloseGameBase();
        catalogue::CloseCatalogue();
        if (m_entries.value(QStringLiteral("mnuCompactDB"))->isChecked() &&
            !app::gDatabasePath.isEmpty())
            compactAtExit();
    } catch (...) {
    }
}

void frmMain::compactAtExit()
{
    setUpdatesEnabled(false);
    treeMain->hide();
    // The batch window in mode 3: a small window that the user can't close.
    if (gFileManager)
        import::frmProcess::Run(*gFileManager, this, import::kModeCompact, QString());
    else
        catalogue::CompactCatalogue();
    setUpdatesEnabled(true);
}

void frmMain::Form_Unload()
{
    if (moTimer) {
        moTimer->stop();
        delete moTimer;
        moTimer = nullptr;
    }
    if (!bFirstActivate) {
        app::SaveWindowPos(*this, QStringLiteral("frmMain"));
        storeSettingsOfWindow();
        app::writeSettings();
    }
    if (app::CurrentLanguage() == app::kNewLanguage)
        app::WriteNewLanguageFile(); // the texts this run asked for, as a new language file
    app::releaseCbmFont(m_font);
}

// What the window holds goes back into the settings globals before they are written.
void frmMain::storeSettingsOfWindow()
{
    app::gHideTree = m_entries.value(QStringLiteral("mnuHideTree"))->isChecked();
    app::gShowToolbar = m_entries.value(QStringLiteral("mnuToggleToolbar"))->isChecked();
    app::gTreeSubItems = m_entries.value(QStringLiteral("mnuTreeOhnePlusMinus"))->isChecked();
    app::gPreview = m_entries.value(QStringLiteral("mnuPreview"))->isChecked();
    app::gPreviewWindow = m_entries.value(QStringLiteral("mnuOpenPreview"))->isChecked();
    app::gViewMode = iViewMode;
    app::gLastFilterRow = std::max(0, lvFilter->indexOfTopLevelItem(lvFilter->currentItem()));
    if (m_splitsApplied) {
        app::gMenuSplitPos = splitPosition(splitMenu, app::gMenuSplitPos);
        app::gPreviewSplitPos = splitPosition(splitPreview, app::gPreviewSplitPos);
        app::gListSplitPos = splitPosition(splitList, app::gListSplitPos);
    }
    SaveColumnLayout();
}

// ---- Places of later work, called in the designed order -------------------------------------

// Load step 5: the importer object, which lives as long as the window.
void frmMain::createFileManager()
{
    if (!gFileManager)
        gFileManager = new import::clsFileManager(this);
}

// Load step 12: every key of GAMEBASE; the section is written back whole at the end. The
// GameBase itself is opened when a command or an import first needs it.
void frmMain::loadGameBaseSettings()
{
    gamebase::loadGameBaseSettings();
    gamebase::InstallGameBaseWriter();
    gamebase::connectCatalogues();
}

// Load steps 13 and 14, the language menu and SetupLanguage: frmMainLanguage.cpp.

// Load steps 15, 16 and 26: frmMainViews.cpp.

// Load step 17: the GameBase filters come with the GameBase views.
void frmMain::loadGameBaseFilters() {}

// Load steps 21 and 22, emulators, profiles and lvStart: frmMainStart.cpp.

// First activation, step 4: on a first run the set-up wizard frmWizard is shown modal over
// this window. The first activation doesn't wait for it; when it closes, the start list
// follows the profiles it assigned and the views show the catalogue it made.
void frmMain::showFirstRunWizard()
{
    m_firstRunSeen = true;
    auto* wizard = new setup::frmWizard(*this);
    wizard->setAttribute(Qt::WA_DeleteOnClose);
    connect(wizard, &QDialog::finished, this, [this] {
        BuildStartMenu();
        BuildView(0, 0, 0);
    });
    wizard->open();
}

// Closing, steps 1, 3 and 4: frmGB, frmPreview and frmFlipList are unloaded, the tree's root
// is selected again when more than one item is selected, and the GameBase is closed here by
// the subsystems that own them.
void frmMain::closeSideWindows()
{
    // frmGB goes before the GameBase that its lists read is closed.
    delete findChild<gamebase::frmGB*>(QStringLiteral("frmGB"), Qt::FindDirectChildrenOnly);
    closePreviewWindows();
}

// SaveColumnLayout: frmMainLayout.cpp.

} // namespace vd::browser
