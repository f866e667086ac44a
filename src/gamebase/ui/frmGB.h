#pragma once
// The GameBase window: the games of the GameBase (lstGB) or the catalogue's own linked entries
// (lstMyFiles) in four views, saved filters as tabs, a search box, up to three screenshots of
// the selected game, starting a game and downloading the archives of the selected games.

#include "browser/Filters.h"
#include "gamebase/GameBaseViews.h"
#include "gamebase/GameStart.h"

#include <array>
#include <QDialog>
#include <QHash>

class QComboBox;
class QLabel;
class QMenu;
class QMenuBar;
class QPushButton;
class QStackedWidget;
class QTabBar;
class QTimer;
class QToolBar;
class QAction;

namespace vd::controls {
class CAQSplit;
class SimpleReport;
} // namespace vd::controls
namespace vd::import {
class clsFileManager;
}

namespace vd::gamebase {

class frmGB : public QDialog
{
    Q_OBJECT
public:
    // Bit of changedFlags(): the catalogue changed, the main window reads its view anew.
    static constexpr int kCatalogueChanged = 4;
    static constexpr int kSearchDelayMs = 800;

    explicit frmGB(import::clsFileManager* fm, QWidget* owner = nullptr);
    ~frmGB() override;

    // Fills the field table (once) and sets up the lists, the splitter and the filter tabs.
    void InitGBForm();
    // Rebuilds the statement of the active list for tab `view` and loads it.
    void BuildView(int view);
    // Rebuilds tabFilter from the saved filters.
    void CreateFilter();
    void ShowScreenshots();
    void UpdateStartButtons();
    void StartGame(const QString& profilKey, int mode = 0);
    void DownloadGames(bool askPath, bool importNow);
    // The search box's debounce ran out.
    void moTimer_Timer();
    void cmdStopSearch_Click();
    void tabViews_Click(int index);
    void tabFilter_Click(int index);
    // The filter editor on the selected filter tab.
    void ShowFilterEditor();
    // After the options (frmGBOptions.cpp): the start menu of the profiles anew; letting go of
    // the GameBase before the options close it; starting over, with an empty search text, on
    // the GameBase that the options left.
    void BuildStartMenu();
    void releaseGameBase();
    void StartOver();

    int changedFlags() const { return m_flags; }
    void clearChangedFlags() { m_flags = 0; }
    void markChanged() { m_flags |= kCatalogueChanged; }
    // Counts of the last download run, for the main window's status line.
    int addedFiles() const { return m_addedFiles; }
    int addedEntries() const { return m_addedEntries; }

    int listMode() const { return iListMode; }
    qint64 startId() const { return lStartID; }
    const GBViewSql& viewSql() const { return m_sql; }
    browser::FilterCollection& filters() { return m_filters; }
    // Writes the filters back into the settings' list.
    void storeFilters();
    // The status panel "Msg".
    QString statusText() const;
    void setStatusText(const QString& text);
    // The active list.
    controls::SimpleReport* activeList() const;
    GameRow selectedRow() const;

    QTabBar* tabViews = nullptr;
    QTabBar* tabFilter = nullptr;
    QLabel* lblMode = nullptr;
    QLabel* lblFilter = nullptr;
    QLabel* lblSearch = nullptr;
    QComboBox* cboSearch = nullptr;
    QPushButton* cmdStopSearch = nullptr;
    QToolBar* tlbMain = nullptr;
    controls::CAQSplit* splitGB = nullptr;
    controls::SimpleReport* lstGB = nullptr;
    controls::SimpleReport* lstMyFiles = nullptr;
    QWidget* fraScreenshots = nullptr;
    std::array<QLabel*, 3> imgScr{};
    QLabel* lblMsg = nullptr;
    QLabel* panelMsg = nullptr;
    QLabel* panelSum = nullptr;
    QTimer* moTimer = nullptr;
    QHash<QString, QAction*> buttons; // tlbMain by key
    QMenu* mnuProfil = nullptr;

signals:
    // The toolbar button "Options": the main window shows the options dialog.
    void optionsRequested();

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void buildForm();
    void buildToolbar();
    QMenuBar* buildMenu();
    void setupList(controls::SimpleReport* list, bool games);
    void fillProfilMenu();
    void showList(int mode);
    void saveLayout();
    void formatCell(controls::SimpleReport* list, qint64 row, int colIndex, QVariant& text);
    QString filterTag(int index) const;
    const browser::clsFilter* currentFilter() const;

    import::clsFileManager* m_fm;
    browser::FilterCollection m_filters;
    GBViewSql m_sql;
    QStackedWidget* m_lists = nullptr;
    int iListMode = 0;
    qint64 lStartID = 0;
    int m_view = kGBViewGameBase;
    std::array<QString, 2> m_filterTags{QStringLiteral("OFF"), QStringLiteral("OFF")};
    QHash<int, QString> m_decodedCaptions; // by field index of the active statement
    int m_flags = 0;
    int m_addedFiles = 0;
    int m_addedEntries = 0;
    bool m_inited = false;
    bool m_splitPlaced = false; // GBSplitPos is placed once the window has its size
    bool m_escPressed = false;
    bool m_downloading = false;
    QString m_lastFolder; // the download's last folder chosen, for this run of the window
    QString m_downloadUrl;
    bool m_secondUrl = false;
};

} // namespace vd::gamebase
