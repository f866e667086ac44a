#pragma once
// frmOptions: the modal dialog in which the user edits the emulators and profiles (the tree
// treeProfils), the profile of each start extension, what an import takes, the GameBase paths
// and the look of the preview. It works on copies and on its own fields; only "OK" moves them
// into the globals, through the steps of setup/Options.h.

#include "setup/Options.h"

#include <array>
#include <functional>
#include <QDialog>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QPushButton;
class QScrollBar;
class QTabWidget;
class QTreeWidget;
class QTreeWidgetItem;
class QWidget;

namespace vd::browser {
class PreviewPane;
}

namespace vd::setup {

class frmOptions : public QDialog
{
    Q_OBJECT
public:
    // The tabs of MyTab, in their order.
    enum Tab
    {
        EMUL = 0,
        FILES,
        DB,
        GB,
        Preview,
        kTabCount
    };
    // The six tree commands, the indexes of cmdTree and of the entries of mnuPopUp.
    enum TreeCommand
    {
        kNew = 0,
        kEdit,
        kDelete,
        kCopy,
        kPaste,
        kStandard,
        kTreeCommandCount
    };

    explicit frmOptions(QWidget* parent = nullptr);

    // Closes the open GameBase for step 7; without it, the GameBase is simply closed.
    void setCloseGameBase(std::function<void()> close) { m_closeGameBase = std::move(close); }

    // The public flags: what the last "OK" changed.
    bool startMenusChanged() const { return m_state.startMenusChanged; }
    bool previewChanged() const { return m_state.previewChanged; }
    bool gameBaseClosed() const { return m_state.gameBaseClosed; }
    bool screenshotsChanged() const { return m_state.screenshotsChanged; }

    // The form's copies, for a look from the tests.
    const launch::ProfilConfig& config() const { return m_state.config; }
    QTreeWidget* tree() const { return treeProfils; }
    QMenu* popupMenu() const { return mnuPopUp; }
    QTabWidget* tabs() const { return MyTab; }
    browser::PreviewPane* sample() const { return m_sample; }
    // How mnuPopUp pops up; tests answer without a popup.
    void setPopupRunner(std::function<void(QMenu&)> runner) { m_popupRunner = std::move(runner); }

    // The six tree commands on the selected node (frmOptionsTree.cpp).
    void cmdTree_Click(int index);

protected:
    void done(int result) override;

private:
    // Building the form (frmOptions.cpp)
    void buildForm();
    QWidget* buildEmulTab();
    QWidget* buildFilesTab();
    QWidget* buildDbTab();
    QWidget* buildGbTab();
    QWidget* buildPreviewTab();
    void Form_Load();
    void MyTab_Click(int index);
    void fillFilesTab();
    void fillDbTab();
    void fillPreviewTab();
    void cboProfils_Click(int index);
    void chkRefreshFiles_Click();
    void chkAllFiles_Click();
    void cmdEditor_Click();
    void cmdGBDB_Click();
    void chooseFolder(QLineEdit* field);
    void cmdGB_Click();
    void pickColor(int which);
    void cmdReset_Click();
    void SizeScroll_Change();
    void showColors();
    void showSample();
    void collectFields();
    void cmdOk_Click();

    // The tree (frmOptionsTree.cpp)
    struct NodePath
    {
        int level = 0; // 0 the top node, 1 emulator, 2 profile, 3 item
        QString emulKey;
        QString profilKey;
        int row = -1;     // an item's row in the option string
        QString itemText; // an item's tag
    };
    void fillTree();
    void syncTreeChecks();
    NodePath pathOf(const QTreeWidgetItem* node) const;
    QTreeWidgetItem* nodeAt(const NodePath& path) const;
    void selectNode(const NodePath& path);
    NodePath currentPath() const;
    void updateTreeButtons();
    QString newCaption(const NodePath& path) const;
    bool pasteAllowed(const NodePath& path) const;
    void treeProfils_NodeCheck(QTreeWidgetItem* node);
    void treeProfils_MouseUp(const QPoint& pos);
    void treeChanged();
    void treeNew(const NodePath& at);
    void treeEdit(const NodePath& at);
    void treeDelete(const NodePath& at);
    void treePaste(const NodePath& at);
    void treeStandard(const NodePath& at);
    void forgetRememberedUnder(const NodePath& deleted);

    OptionsState m_state;
    std::array<bool, kTabCount> m_tabFilled{};
    std::function<void()> m_closeGameBase;
    std::function<void(QMenu&)> m_popupRunner;
    bool m_treeFilling = false;
    bool m_remembered = false; // Kopieren took a node
    NodePath m_copied;

    // Controls
    QTabWidget* MyTab = nullptr;
    QPushButton* cmdOk = nullptr;
    QPushButton* cmdCancel = nullptr;
    // EMUL
    QTreeWidget* treeProfils = nullptr;
    std::array<QPushButton*, kTreeCommandCount> cmdTree{};
    QMenu* mnuPopUp = nullptr;
    // FILES
    QList<QLabel*> lblExtension;
    QList<QComboBox*> cboProfils;
    // DB
    QCheckBox* chkMD5 = nullptr;
    QCheckBox* chkRefreshFiles = nullptr;
    QCheckBox* chkArchiv = nullptr;
    QCheckBox* chkC64FilesDB = nullptr;
    QCheckBox* chkGBFiles = nullptr;
    QLineEdit* txtSize = nullptr;
    QLineEdit* txtEditor = nullptr;
    QPushButton* cmdEditor = nullptr;
    QList<QCheckBox*> chkFiles;
    QCheckBox* chkAllFiles = nullptr;
    QString m_archivCaption; // with its "@1"
    // GB
    QLineEdit* txtGBDB = nullptr;
    QLineEdit* txtGBShots = nullptr;
    QLineEdit* txtDownload = nullptr;
    QLabel* lblShots = nullptr;
    QLabel* lblDownload = nullptr;
    QCheckBox* chkAskDown = nullptr;
    QCheckBox* chkArchivFile = nullptr;
    QCheckBox* chkArchivOnlyGame = nullptr;
    QCheckBox* chkAdultContent = nullptr;
    QPushButton* cmdGB = nullptr;
    // Preview
    QListWidget* lstFont = nullptr;
    QLineEdit* txtFontSize = nullptr;
    QScrollBar* SizeScroll = nullptr;
    std::array<QPushButton*, 3> picColor{};   // picForeColor, picBackColor, picSelectColor
    browser::PreviewPane* m_sample = nullptr; // lvPreview
};

} // namespace vd::setup
