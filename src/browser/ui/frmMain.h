#pragma once
// frmMain, the one main window: its load, first activation and closing, the menus, the toolbar,
// the status bar and the three splitters, opening catalogues and the search boxes' timer.
//
// The views, the side lists, the tree and the lists, the preview and the commands on files come
// with their own subsystems; each has a named place below, called where its step stands in the
// designed order.

#include "app/ui/CbmFont.h"
#include "browser/ViewBuilder.h"

#include <array>
#include <functional>
#include <QHash>
#include <QIcon>
#include <QMainWindow>
#include <QStringList>
#include <QVector>

class QAction;
class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QMenu;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QTimer;
class QToolBar;
class QToolButton;
class QTreeWidget;

namespace vd::import {
class clsFileManager;
}

namespace vd::controls {
class ReportView;
class SimpleReport;
class UserTree;
} // namespace vd::controls

namespace vd::launch {
class frmFlipList;
}

namespace vd::browser {

class PreviewPane;
class frmPreview;
class SearchTimer;

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
    // Writes a filter into lvFilter: its row is added, or updated when it is there. With
    // `flag` and the row the selected one, the view is built anew.
    void CreateFilter(const clsFilter& row, bool flag);

    // Starting (frmMainStart.cpp). StartSelected starts the item `id` (0: the selection, the
    // tag of INFO) with the profile `profilKey` ("" for the profile of its extension), shows
    // the result in the status bar and, in the views ordered by starts, reads the views anew.
    void StartSelected(const QString& profilKey, qint32 id = 0);
    // Fills lvStart, the entries of mnuProfil and the drop-down of the toolbar button "Start"
    // with the active profiles; after the profiles changed.
    void BuildStartMenu();

    // The preview (frmMainPreview.cpp). ShowPreview shows the selection's container in the
    // pane and in frmPreview; `force` reloads the container on show. ShowFlipList opens
    // frmFlipList (created on first use) and hands it FillList(id, path). applyPreviewLook
    // takes the font and colours of the settings, after the options change.
    void ShowPreview(bool force);
    void ShowFlipList(qint64 id, const QString& path);
    void applyPreviewLook();
    PreviewPane* previewPane() const { return m_previewPane; }
    frmPreview* previewWindow() const { return m_previewWindow; }
    launch::frmFlipList* flipListWindow() const { return m_flipList; }
    // gFileManager, the one importer object of the run.
    vd::import::clsFileManager* fileManager() const { return gFileManager; }

    // mnuOption and the toolbar buttons "Options" of this window and of frmGB
    // (frmMainOptions.cpp): the options dialog, then the start menus, the preview and the
    // GameBase window follow what it changed.
    void ShowOptions();

    // The import commands (frmMainBatch.cpp), each in frmProcess. mnuAddFile asks for a file,
    // starting in `startFolder` when given, and imports it (mode 5); mnuAddDir asks for a
    // folder, or takes the one given (a recent-folders entry), and imports it (mode 1).
    void mnuAddFile_Click(const QString& startFolder = {});
    void mnuAddDir_Click(const QString& folder = {});

    // What the tests and the neighbours look at.
    bool firstActivationPending() const { return bFirstActivate; }
    bool firstRunSeen() const { return m_firstRunSeen; }
    bool unloaded() const { return m_unloaded; }
    int viewMode() const { return iViewMode; }
    QStringList searchTexts() const { return sSearchText; }
    // The statements of the last BuildView, for the tree and the lists.
    const ViewSql& viewSql() const { return m_viewSql; }
    QString infoTag() const;
    QLabel* statusPanel(const QString& key) const;
    QAction* toolbarButton(const QString& key) const;
    QAction* menuEntry(const QString& name) const;
    QComboBox* searchBox(int index) const;
    QCheckBox* newFilesBox() const { return chkNewFiles; }
    QSplitter* splitter(const QString& name) const;
    const app::CbmFontSetup& fontSetup() const { return m_font; }
    // The tree, the lists and the side lists of the views and filters.
    controls::UserTree* tree() const { return treeMain; }
    controls::ReportView* list() const { return lstMain; }
    controls::SimpleReport* filesList() const { return lstMainFiles; }
    QTreeWidget* viewsList() const { return lvViews; }
    QTreeWidget* filterList() const { return lvFilter; }
    int filterKey() const { return iFilterKey; }

    // Column layouts, context menu and the rest of the menus (frmMainLayout.cpp).
    // SetColumnsLayout: the captions, hidden states and sort marks the views give lstMain's
    // columns; after every change of its columns.
    void SetColumnsLayout();
    // moTimer; tests give it a clock of their own.
    SearchTimer* searchTimer() const { return moTimer; }
    // lvSearch: the captions beside the search boxes.
    QTreeWidget* searchList() const { return lvSearch; }
    // How mnuEdit pops up as the context menu; tests answer without a popup.
    void setPopupRunner(std::function<void(QMenu&)> runner) { m_popupRunner = std::move(runner); }

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

    // Column layouts and the menus of the window (frmMainLayout.cpp)
    using ColumnWidths = QVector<QPair<QString, int>>;
    ColumnWidths fetchColumnWidths();
    void RestoreColumnWidths(const ColumnWidths& widths, bool categoryHidden);
    void captionMainFiles();
    QTreeWidget* buildSearchList(QWidget* panel);
    void connectWindowMenus();
    void popupEditMenu();
    void mnuEditHeader_Click();
    void mnuFind_Click();
    // Entry `index` of mnuLang: 1 is German, 2 and on the language files (frmMainLanguage.cpp).
    void mnuLang_Click(int index);
    void openWebPage(const QString& addresses);
    void enableWebPages();
    void selectLastFilterRow();

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

    // Starting (frmMainStart.cpp)
    QTreeWidget* buildStartList(QWidget* panel);
    void connectStartCommands();
    void installLaunchHooks();
    void enableStartList(bool enabled);
    void refreshStartedViews();

    // Batch commands (frmMainBatch.cpp)
    void connectBatchCommands();
    void mnuCheckFiles_Click();
    // Runs frmProcess modally; reads the views anew when the catalogue changed.
    int runProcess(int mode, const QString& param);
    void rememberImportFolder(const QString& folder);

    // The options (frmMainOptions.cpp)
    void connectOptionCommands();

    // GameBase commands (frmMainGameBase.cpp)
    void connectGameBaseCommands();
    void mnuGBOpen_Click();
    void mnuGBConnect_Click();
    void mnuGBImportCat_Click();

    // File and category commands (frmMainCommands.cpp)
    void connectFileCommands();
    void mnuDel_Click();
    void mnuNewCat_Click();
    void mnuDetails_Click();
    void renameCategory(qint64 id, const QString& oldName);
    void showFileProperties(qint64 id);
    void mnuRefreshFile_Click();
    void mnuCopy_Click(bool useSelection);
    void mnuFilepath_Click();
    void mnuCreateMD5_Click();
    void exportDirectories(const QString& folder);
    QList<qint64> selectedFileIds();
    QList<qint64> selectedEntryIds();
    bool treeHasFocus() const;

    // Filters (frmMainFilterList.cpp)
    void connectFilterCommands();
    // Opens the filter editor modally on the selected filter; after it, the view follows.
    void mnuFilter_Click();

    // The preview and the flip list (frmMainPreview.cpp)
    void connectPreviewCommands();
    void mnuOpenPreview_Click();
    void mnuAddToFlipList_Click();
    void closePreviewWindows();

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

    // The tree, the lists and the side lists (frmMainViews.cpp)
    void buildViewControls();
    QTreeWidget* buildSideList(QWidget* panel, const QString& name, const QString& title);
    void fillViewsList();
    void fillFilterList();
    void lvViews_Click(int row);
    void lvFilter_Click(int row);
    void mnuView_Click(int index);
    void feedViewControls(int keepTree);
    void showMainFiles(bool on);
    void treeMain_SelectionChange();
    void treeMain_DblClick();
    void ShowCounts(bool force);
    void showDuration(qint64 ms);

    // Form fields
    bool bFirstActivate = true;
    app::CbmFontSetup m_font; // sFontFile: the font file added for this run
    int iViewMode = 1;
    QStringList sSearchText;        // the search texts BuildView used last, then chkNewFiles
    ViewSql m_viewSql;              // what BuildView built last
    SearchTimer* moTimer = nullptr; // the 800 ms debounce of the search boxes
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
    controls::UserTree* treeMain = nullptr;
    controls::ReportView* lstMain = nullptr;
    controls::SimpleReport* lstMainFiles = nullptr; // view 2
    QStackedWidget* m_listPages = nullptr;          // splitList, or lstMainFiles in view 2
    QTreeWidget* lvViews = nullptr;
    QTreeWidget* lvFilter = nullptr;
    QTreeWidget* lvSearch = nullptr;
    std::function<void(QMenu&)> m_popupRunner;
    // What UpdateActions found selected, and so which commands are on.
    struct Selection
    {
        bool bDelete = false;
        bool bDetails = false;
        bool bFile = false;
        bool bStart = false;
        int iType = 0;
    };
    Selection m_selection;
    int iFilterKey = 0;                        // key of the selected filter, 0 for none
    bool bRefreshing = false;                  // BuildView runs the tree's selection handler itself
    QVector<QIcon> m_icons;                    // imgMain: icon n is entry n - 1
    QFrame* Container = nullptr;               // the place of the preview
    PreviewPane* m_previewPane = nullptr;      // lvPreview, picGrafic, lblPreview in Container
    frmPreview* m_previewWindow = nullptr;     // created with mnuOpenPreview
    launch::frmFlipList* m_flipList = nullptr; // created on first use
    std::array<QComboBox*, 3> cboSearch{};
    QCheckBox* chkNewFiles = nullptr;
    QPushButton* cmdStopSearch = nullptr;
    QHash<QString, QAction*> m_entries; // menu entries by name (mnuNewDB, ...)
    QHash<QString, QAction*> m_buttons; // toolbar buttons by key (NewDB, ...)
    QHash<QString, QLabel*> m_panels;   // status panels by key (INFO, ...)
    QTreeWidget* lvStart = nullptr;     // the active profiles
    QList<QAction*> m_profilEntries;    // mnuProfil(1), ...: one for each active profile
    vd::import::clsFileManager* gFileManager = nullptr; // owned by the window
};

} // namespace vd::browser
