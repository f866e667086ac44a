// frmMain: the search boxes and their debounce timer, the view builder's entry, which commands
// a selection enables, and the status bar.

#include "browser/ui/frmMain.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
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
    moTimer->stop();
    moTimer->start();
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

// When the tree's selection does not hold exactly one item after a search, its selection
// handler runs here; that comes with the tree control.
void frmMain::treeSelectionAfterSearch() {}

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
    (void)withCategory;
    (void)keepTree;
    if (mode > 0)
        iViewMode = mode;
    // The SQL of the view and the setup of the tree and the lists come with the view builder.
    // Step 7: the search texts used, and chkNewFiles behind them.
    sSearchText.clear();
    for (const QComboBox* box : cboSearch)
        sSearchText << box->currentText();
    sSearchText << checkText(chkNewFiles);
    cmdStopSearch->setEnabled(HasSearch());
    emit viewBuilt();
}

void frmMain::UpdateActions(const QString& sender)
{
    m_panels.value(QStringLiteral("INFO"))->setProperty("tag", QStringLiteral("0"));
    readSelection(sender);
    // Nothing is selected until the tree and the lists exist: every selection command is off.
    const bool bDelete = false;
    const bool bDetails = false;
    const bool bFile = false;
    const bool bStart = false;
    setEntryEnabled(QStringLiteral("mnuDel"), bDelete);
    setEntryEnabled(QStringLiteral("mnuDetails"), bDetails);
    setEntryEnabled(QStringLiteral("mnuAddToFlipList"), bDetails);
    if (QAction* newCat = m_entries.value(QStringLiteral("mnuNewCat")))
        newCat->setVisible(iViewMode == 3);
    setEntryEnabled(QStringLiteral("mnuStart"), bStart);
    setEntryEnabled(QStringLiteral("mnuRefreshFile"), bFile);
    setEntryEnabled(QStringLiteral("mnuFilepath"), bStart);
    m_buttons.value(QStringLiteral("Action"))->setVisible(false);
    setButtonEnabled(QStringLiteral("Edit"), bDetails);
    setButtonEnabled(QStringLiteral("Del"), bDelete);
    setButtonEnabled(QStringLiteral("Start"), bStart);
}

// Steps 1 to 3 of UpdateActions: the selected tree node or list row gives the flags, the
// status text and the tag of INFO; that comes with the tree and the lists, and lvStart and the
// preview follow the selection with their subsystems.
void frmMain::readSelection(const QString& sender)
{
    (void)sender;
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
