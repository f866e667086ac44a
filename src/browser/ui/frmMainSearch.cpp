// frmMain: the search boxes and their debounce timer, the view builder's entry, which commands
// a selection enables, and the status bar.

#include "browser/ui/frmMain.h"

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/Filters.h"
#include "browser/ui/SearchTimer.h"
#include "catalogue/Database.h"
#include "controls/TreeItem.h"
#include "controls/ui/UserTree.h"
#include "import/clsFileManager.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTimer>

namespace vd::browser {

namespace {

QString checkText(const QCheckBox* box)
{
    return box->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
}

} // namespace

void frmMain::searchTextChanged(int index)
{
    // Boxes emptied while disabled (ClearSearch) are no change of their own.
    if (!moTimer || !cboSearch[size_t(index)]->isEnabled())
        return;
    moTimer->restart();
}

void frmMain::moTimer_Timer()
{
    if (moTimer)
        moTimer->stop();
    bool changed = false;
    for (size_t i = 0; i < cboSearch.size() && !changed; ++i)
        changed = cboSearch[i]->currentText() != sSearchText.value(qsizetype(i));
    if (!changed)
        changed = checkText(chkNewFiles) != sSearchText.value(qsizetype(cboSearch.size()));
    if (!cboSearch[0]->isEnabled() || !changed)
        return;
    for (QComboBox* box : cboSearch) {
        const QString text = box->currentText();
        if (text.isEmpty() ||
            box->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive) >= 0)
            continue;
        const QSignalBlocker block(box);
        box->insertItem(0, text);
        box->setCurrentIndex(-1);
        box->setEditText(text);
    }
    if (iViewMode == 2) {
        BuildView(0, 0, 0);
        return;
    }
    setUpdatesEnabled(false);
    BuildView(0, 0, 0);
    treeSelectionAfterSearch();
    setUpdatesEnabled(true);
}

// The tree selects one item at most: after a search that left none selected, the selection
// handler's work is to read the (empty) selection again.
void frmMain::treeSelectionAfterSearch()
{
    if (treeMain->ready() && treeMain->SelectedItem())
        return;
    treeMain_SelectionChange();
    UpdateActions(QString());
}

bool frmMain::HasSearch() const
{
    for (const QComboBox* box : cboSearch) {
        if (!box->currentText().isEmpty())
            return true;
    }
    return chkNewFiles->isChecked();
}

void frmMain::ClearSearch()
{
    const bool enabled = cboSearch[0]->isEnabled();
    SetSearchEnabled(false);
    for (size_t i = 0; i < cboSearch.size(); ++i) {
        // Enabled again before the last box is emptied, so that one change is seen.
        if (i + 1 == cboSearch.size())
            SetSearchEnabled(enabled);
        cboSearch[i]->setEditText(QString());
    }
    chkNewFiles->setChecked(false);
}

void frmMain::cmdStopSearch_Click()
{
    if (!HasSearch())
        return;
    ClearSearch();
    moTimer_Timer();
}

void frmMain::SetSearchEnabled(bool enabled)
{
    for (QComboBox* box : cboSearch)
        box->setEnabled(enabled);
}

void frmMain::BuildView(int mode, int withCategory, int keepTree)
{
    if (app::gDatabasePath.isEmpty() || !app::gDB)
        return;
    QElapsedTimer duration; // step 2
    duration.start();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    // Step 3: the layout of the list shown is kept; lstMain's widths carry over to the new view.
    SaveColumnLayout();
    ColumnWidths widths;
    if (mode != kViewMainFiles && !(mode == 0 && iViewMode == kViewMainFiles))
        widths = fetchColumnWidths();
    if (mode > 0)
        iViewMode = mode;
    // Step 7: the search texts used, and chkNewFiles behind them.
    sSearchText.clear();
    for (const QComboBox* box : cboSearch)
        sSearchText << box->currentText();
    sSearchText << checkText(chkNewFiles);
    cmdStopSearch->setEnabled(HasSearch());
    chkNewFiles->setEnabled(iViewMode != kViewNewFiles); // step 9

    ViewInput in;
    in.view = iViewMode;
    in.filter = iFilterKey != 0 ? gFilters.find(iFilterKey) : nullptr; // step 14
    for (size_t i = 0; i < cboSearch.size(); ++i)
        in.search[i] = cboSearch[i]->currentText();
    in.newFiles = chkNewFiles->isChecked();
    in.withCategory = withCategory != 0;
    in.treeSubItems = m_entries.value(QStringLiteral("mnuTreeOhnePlusMinus"))->isChecked();
    if (gFileManager) {
        in.startCategoryID = gFileManager->lStartCategoryID;
        in.startC64FileID = gFileManager->lStartC64FileID;
    }
    in.mainListColumns = app::gMainListColumns;
    in.captions = ViewCaptions::current();
    m_viewSql = BuildViewSql(in);
    if (iViewMode != kViewMainFiles)
        app::gMainListColumns = m_viewSql.mainListColumns;
    feedViewControls(keepTree);
    if (iViewMode == kViewMainFiles) {
        captionMainFiles();
    } else {
        SetColumnsLayout(); // step 19
        if (keepTree == 0)  // step 20
            RestoreColumnWidths(widths, !m_viewSql.withCategory);
    }
    showDuration(duration.elapsed());
    QApplication::restoreOverrideCursor();
    emit viewBuilt();
}

void frmMain::UpdateActions(const QString& sender)
{
    readSelection(sender); // steps 1 to 3: the flags, the status text and the tag of INFO
    const Selection& s = m_selection;
    const bool on = app::gDB != nullptr;
    setEntryEnabled(QStringLiteral("mnuCreateMD5"), on && iViewMode == 2);
    setEntryEnabled(QStringLiteral("mnuSaveDir"), on && iViewMode == 2);
    setEntryEnabled(QStringLiteral("mnuDel"), s.bDelete);
    setEntryEnabled(QStringLiteral("mnuDetails"), s.bDetails);
    setEntryEnabled(QStringLiteral("mnuAddToFlipList"),
                    s.bDetails && (s.iType == 1 || s.iType == 2 || s.iType == 12 || s.iType == 13));
    if (QAction* newCat = m_entries.value(QStringLiteral("mnuNewCat")))
        newCat->setVisible(iViewMode == 3);
    setEntryEnabled(QStringLiteral("mnuStart"), s.bStart);
    setEntryEnabled(QStringLiteral("mnuRefreshFile"), s.bFile);
    setEntryEnabled(QStringLiteral("mnuFilepath"), s.bStart);
    m_buttons.value(QStringLiteral("Action"))->setVisible(false);
    setButtonEnabled(QStringLiteral("Edit"), s.bDetails);
    setButtonEnabled(QStringLiteral("Del"), s.bDelete);
    setButtonEnabled(QStringLiteral("Start"), s.bStart);
    enableStartList(s.bStart); // step 6
    ShowPreview(false);        // step 7
}

void frmMain::ShowStatus(const QString& text)
{
    m_panels.value(QStringLiteral("INFO"))->setText(text);
}

QString frmMain::infoTag() const
{
    return m_panels.value(QStringLiteral("INFO"))->property("tag").toString();
}

QLabel* frmMain::statusPanel(const QString& key) const
{
    return m_panels.value(key);
}

QAction* frmMain::toolbarButton(const QString& key) const
{
    return m_buttons.value(key);
}

QAction* frmMain::menuEntry(const QString& name) const
{
    return m_entries.value(name);
}

QComboBox* frmMain::searchBox(int index) const
{
    return index >= 0 && size_t(index) < cboSearch.size() ? cboSearch[size_t(index)] : nullptr;
}

QSplitter* frmMain::splitter(const QString& name) const
{
    for (QSplitter* split : {splitMenu, splitPreview, splitList}) {
        if (split->objectName() == name)
            return split;
    }
    return nullptr;
}

} // namespace vd::browser
