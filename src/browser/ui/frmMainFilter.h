#pragma once
// The filter editor: one filter of the main window's list at a time, its conditions as inputs
// with a compare button each, the archive box and the tree of file types. "Übernehmen" writes
// the inputs into the filter in colFilters at once; the settings file gets them at exit.

#include "browser/FilterForm.h"

#include <array>
#include <functional>
#include <QDialog>
#include <QHash>

class QAction;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QToolBar;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace vd::db {
class Database;
}
namespace vd::controls {
class DBCombo;
}

namespace vd::browser {

class FilterCollection;
class frmLegend;

class frmMainFilter : public QDialog
{
    Q_OBJECT
public:
    // `filters` is colFilters of the main window; `database` fills the lists of the inputs.
    frmMainFilter(FilterCollection& filters, db::Database* database, QWidget* parent = nullptr);
    ~frmMainFilter() override;

    // Shows the filter of `key` (0: none yet; "Übernehmen" then asks for a name).
    void InitForm(qint32 key);
    // Shows the window modally; when a runner is installed (see below), shows it without a
    // loop of its own and hands it to the runner instead.
    int showModal();

    // The filter on show; 0 while a new one has no key yet.
    qint32 currentKey() const { return m_key; }
    QString currentName() const { return m_name; }
    // The inputs as they stand, and showing a set of inputs.
    FilterFormState formState() const;
    void showForm(const FilterFormState& form);

    // The controls, for the tests and the main window.
    QComboBox* filterBox() const { return cboFilter; }
    controls::DBCombo* fileBox() const { return cboFile; }
    controls::DBCombo* imageBox() const { return cboImage; }
    controls::DBCombo* categoryBox() const { return cboCategory; }
    QComboBox* extensionBox() const { return cboExtension; }
    QLineEdit* pathBox() const { return txtPath; }
    QLineEdit* sizeBox() const { return txtSize; }
    QCheckBox* compressedBox() const { return chkCompressed; }
    QTreeWidget* fileTree() const { return treeFiles; }
    QToolButton* compareButton(int index) const { return cmdCompare[size_t(index)]; }
    QAction* toolButton(const QString& key) const { return m_tools.value(key); }
    QPushButton* applyButton() const { return cmdApply; }
    QPushButton* okButton() const { return cmdOK; }
    QPushButton* exitButton() const { return cmdExit; }
    // The node of treeFiles with that text (an extension), or null.
    QTreeWidgetItem* fileNode(const QString& text) const;

signals:
    // A filter of the collection was stored or renamed; its row in lvFilter must follow.
    void filterStored(qint32 key);
    // A filter got a new name; its conditions are as they were.
    void filterRenamed(qint32 key);
    // A filter was taken out of the collection.
    void filterRemoved(qint32 key);

private:
    void buildControls();
    QWidget* buildInputs();
    void buildTree();
    void fillFilterBox(qint32 select);
    void fillExtensions();
    void readFilter(qint32 key);

    void cboFilter_Click(int index);
    void cmdCompare_Click(int index);
    void setCompare(int index, const QString& caption);
    void inputTyped(int index);
    void tbFilter_ButtonClick(const QString& key);
    void cmdNew_Click();
    void cmdEdit_Click();
    void cmdDelete_Click();
    void cmdReset_Click();
    void cmdInfo_Click();
    // Asks for a name until it is free or the user cancels; "" on cancel.
    QString askName(const QString& prompt, const QString& title, const QString& clashTitle,
                    const QString& start, qint32 ownKey);
    bool cmdApply_Click();
    void cmdOK_Click();

    FilterCollection& m_filters;
    db::Database* m_db;
    qint32 m_key = 0;
    QString m_name; // of the filter on show, or of a new one before its first storing
    bool m_filling = false;

    QToolBar* tbFilter = nullptr;
    QHash<QString, QAction*> m_tools;
    QComboBox* cboFilter = nullptr;
    controls::DBCombo* cboFile = nullptr;
    controls::DBCombo* cboImage = nullptr;
    controls::DBCombo* cboCategory = nullptr;
    QComboBox* cboExtension = nullptr;
    QLineEdit* txtPath = nullptr;
    QLineEdit* txtSize = nullptr;
    std::array<QToolButton*, kCompareCount> cmdCompare{};
    QCheckBox* chkCompressed = nullptr;
    QTreeWidget* treeFiles = nullptr;
    QPushButton* cmdApply = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdExit = nullptr;
    frmLegend* m_legend = nullptr;
};

// Offscreen tests can't sit in a modal loop: with a runner installed, showModal shows the
// window and calls the runner, which drives it and closes it. nullptr restores exec().
using FilterEditorRunner = std::function<void(frmMainFilter&)>;
void setFilterEditorRunner(FilterEditorRunner runner);

} // namespace vd::browser
