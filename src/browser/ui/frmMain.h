#pragma once
// frmMain, the one main window: its load, first activation and closing, the menus, the toolbar,
// the status bar and the three splitters, opening catalogues and the search boxes' timer.
//
// The views, the side lists, the tree and the lists, the preview and the commands on files come
// with their own subsystems; each has a named place below, called where its step stands in the
// designed order.

#include "app/ui/CbmFont.h"

#include <array>
#include <functional>
#include <QHash>
#include <QMainWindow>
#include <QStringList>

class QAction;
class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QMenu;
class QPushButton;
class QSplitter;
class QTimer;
class QToolBar;
class QToolButton;

namespace vd::browser {

class frmMain : public QMainWindow
{
    Q_OBJECT
public:
    // The window can't be made smaller than this, in twips.
    static constexpr double kMinWidthTwips = 10000;
    static constexpr double kMinHeightTwips = 5970;
    // The size the window opens with when no position is remembered, in twips.
    static constexpr double kDesignWidthTwips = 13500;
    static constexpr double kDesignHeightTwips = 9000;

    // Creates the window and runs its load (Form_Load). Nothing is opened yet.
    explicit frmMain(QWidget* parent = nullptr);
    ~frmMain() override;

    // The first activation, run once after the window is first shown: empties Temp, opens the
    // remembered catalogue or recognises a first run. When Temp can't be emptied and the user
    // cancels, the window closes without saving anything.
    void Form_Activate();

    // The one way a catalogue becomes the current one. `ok` tells whether it was opened.
    void OpenCatalogue(const QString& path, bool& ok);
    // mnuNewDB: CreateCatalogue, then OpenCatalogue of the new file.
    void NewDB(bool& ok);
    // Opens a chosen catalogue; on success the plain files in Temp are deleted.
    void OpenCatalogueDialog(const QString& path);
    // The view builder's entry. Steps that need the views come with the view builder; here the
    // view number and the search texts it used are kept, and viewBuilt() is emitted.
    void BuildView(int mode, int withCategory, int keepTree);

    // What the tests and the neighbours look at.
    bool firstActivationPending() const { return bFirstActivate; }
    bool firstRunSeen() const { return m_firstRunSeen; }
    bool unloaded() const { return m_unloaded; }
    int viewMode() const { return iViewMode; }
    QStringList searchTexts() const { return sSearchText; }
    QString infoTag() const;
    QLabel* statusPanel(const QString& key) const;
    QAction* toolbarButton(const QString& key) const;
    QAction* menuEntry(const QString& name) const;
    QComboBox* searchBox(int index) const;
    QCheckBox* newFilesBox() const { return chkNewFiles; }
    QSplitter* splitter(const QString& name) const;
    const app::CbmFontSetup& fontSetup() const { return m_font; }

signals:
    // BuildView ran (each query of the views).
    void viewBuilt();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // Load, closing (frmMain.cpp)
    void Form_Load();
    void loadSteps();
    void setupFont();
    void Form_QueryUnload();
    void Form_Unload();
    void compactAtExit();
    void storeSettingsOfWindow();
    void endWaitCursor();

    // Places of later work, in the order the load calls them (frmMain.cpp)
    void createFileManager();
    void loadGameBaseSettings();
    void loadLanguageMenu();
    void SetupLanguage();
    void setupSideLists();
    void loadCatalogueFilters();
    void loadGameBaseFilters();
    void loadEmulatorsAndProfiles();
    void loadExtensionProfiles();
    void setupImageLists();
    void showFirstRunWizard();
    void closeSideWindows();
    void SaveColumnLayout();

    // The frame (frmMainFrame.cpp)
    void buildMenus();
    QAction* addEntry(QMenu* menu, const QString& name, const QString& caption);
    void buildToolbar();
    void buildStatusBar();
    void buildPanes();
    void buildSearchPanel(QFrame* panel);
    void connectCommands();
    void setCommand(const QString& name, std::function<void()> handler);
    void setEntryEnabled(const QString& name, bool enabled);
    void setButtonEnabled(const QString& key, bool enabled);
    void applySplitPositions();
    void setSplitPosition(QSplitter* split, double twips);
    double splitPosition(const QSplitter* split, double previous) const;
    void showCaption();

    // Catalogues (frmMainCatalogue.cpp)
    void mnuNewDB_Click();
    void mnuOpenDB_Click();
    void mnuExit_Click();
    void mnuToggleToolbar_Click();
    void mnuHideTree_Click();
    void mnuPreview_Click();
    void enableByCatalogue();
    void ArrangeRecentMenu(const QStringList& collection, const QString& buttonKey);
    void arrangeRecentMenus();
    void recentChosen(const QString& buttonKey, const QString& path);

    // Search and selection (frmMainSearch.cpp)
    void searchTextChanged(int index);
    void moTimer_Timer();
    bool HasSearch() const;
    void ClearSearch();
    void cmdStopSearch_Click();
    void SetSearchEnabled(bool enabled);
    void UpdateActions(const QString& sender);
    void readSelection(const QString& sender);
    void ShowStatus(const QString& text);
    void treeSelectionAfterSearch();

    // Form fields
    bool bFirstActivate = true;
    app::CbmFontSetup m_font; // sFontFile: the font file added for this run
    int iViewMode = 1;
    QStringList sSearchText;   // the search texts BuildView used last, then chkNewFiles
    QTimer* moTimer = nullptr; // the 800 ms debounce of the search boxes
    bool m_firstRunSeen = false;
    bool m_unloaded = false;
    bool m_waitCursor = false;
    bool m_splitsApplied = false;
    bool m_activating = false; // the first activation is yielding: don't start it twice

    // Controls
    QToolBar* tlbMain = nullptr;
    QSplitter* splitMenu = nullptr;
    QSplitter* splitPreview = nullptr;
    QSplitter* splitList = nullptr;
    QFrame* fraMain = nullptr;
    QFrame* treeMain = nullptr;  // the place of the tree control
    QFrame* lstMain = nullptr;   // the place of the list control
    QFrame* Container = nullptr; // the place of the preview
    std::array<QComboBox*, 3> cboSearch{};
    QCheckBox* chkNewFiles = nullptr;
    QPushButton* cmdStopSearch = nullptr;
    QHash<QString, QAction*> m_entries; // menu entries by name (mnuNewDB, ...)
    QHash<QString, QAction*> m_buttons; // toolbar buttons by key (NewDB, ...)
    QHash<QString, QLabel*> m_panels;   // status panels by key (INFO, ...)
};

} // namespace vd::browser
