// frmMain: the column layouts of the lists (kept across views and runs), lvSearch beside the
// search boxes, mnuEdit as the context menu, and the menu entries that only show something:
// the column editor, the find dialog and the web pages.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "browser/ui/frmLogo.h"
#include "browser/ui/frmMain.h"
#include "controls/TreeItem.h"
#include "controls/ui/ReportView.h"
#include "controls/ui/SimpleReport.h"
#include "controls/ui/UserTree.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QCursor>
#include <QDesktopServices>
#include <QHeaderView>
#include <QMenu>
#include <QTreeWidget>
#include <QUrl>

namespace vd::browser {

using app::Translate;

namespace {

// lvSearch: Name, the hidden Typ and Key, and the column that holds the box of the row.
constexpr int kSearchBoxColumn = 3;

QVector<ListColumnState> columnStates(const controls::ReportColumns& columns)
{
    QVector<ListColumnState> states;
    for (int i = 0; i < columns.count(); ++i) {
        const controls::ReportColumn& c = columns[i];
        ListColumnState s;
        s.key = c.key;
        s.caption = c.caption;
        s.hidden = c.hidden;
        s.width = c.width;
        s.order = c.order;
        states << s;
    }
    return states;
}

} // namespace

// ---- Column layouts ------------------------------------------------------------------------

// The list of the view keeps its layout in sLayouts; lstMain's visible columns also give
// sMainListColumns. A list without columns (nothing shown yet) leaves both alone.
void frmMain::SaveColumnLayout()
{
    if (!lstMain || !lstMainFiles)
        return;
    while (app::gListLayouts.size() < 4)
        app::gListLayouts << QString();
    const int index = LayoutIndex(iViewMode);
    if (iViewMode == kViewMainFiles) {
        if (lstMainFiles->Columns().count() > 0)
            app::gListLayouts[index] = lstMainFiles->Layout();
        return;
    }
    if (lstMain->Columns().count() == 0)
        return;
    app::gListLayouts[index] = lstMain->Layout();
    app::gMainListColumns =
        MainListColumnsOf(columnStates(lstMain->Columns()), ViewCaptions::current());
}

void frmMain::SetColumnsLayout()
{
    controls::ReportColumns& columns = lstMain->Columns();
    if (columns.count() == 0)
        return;
    const ViewCaptions captions = ViewCaptions::current();
    QVector<ListColumnState> states = columnStates(columns);
    vd::browser::SetColumnsLayout(states, iViewMode, captions);
    for (int i = 0; i < columns.count(); ++i) {
        controls::ReportColumn& c = columns[i];
        c.caption = states[i].caption;
        c.hidden = states[i].hidden;
        if (states[i].sortDirection == 1)
            c.sortPicture = -1; // the statement orders it newest or most first
        if (c.key == captions.file)
            c.imageField = QStringLiteral("Icon"); // step 19: the file type's icon
    }
    lstMain->report().columnsChanged();
}

// View 2: the column of the file's name is captioned as the files are called.
void frmMain::captionMainFiles()
{
    controls::ReportColumns& columns = lstMainFiles->Columns();
    const int disc = columns.indexOf(QStringLiteral("Disc_File"));
    if (disc < 0)
        return;
    columns[disc].caption = ViewCaptions::current().disk;
    lstMainFiles->columnsChanged();
}

frmMain::ColumnWidths frmMain::fetchColumnWidths()
{
    return FetchColumnWidths(columnStates(lstMain->Columns()));
}

void frmMain::RestoreColumnWidths(const ColumnWidths& widths, bool categoryHidden)
{
    controls::ReportColumns& columns = lstMain->Columns();
    if (widths.isEmpty() || columns.count() == 0)
        return;
    QVector<ListColumnState> states = columnStates(columns);
    vd::browser::RestoreColumnWidths(states, widths, categoryHidden, ViewCaptions::current());
    for (int i = 0; i < columns.count(); ++i)
        columns[i].width = states[i].width;
    lstMain->report().columnsChanged();
}

// ---- lvSearch --------------------------------------------------------------------------------

// Four captions, each beside its box: the entry's name, the file's name, the path, and the
// check box for new files.
QTreeWidget* frmMain::buildSearchList(QWidget* panel)
{
    lvSearch = buildSideList(panel, QStringLiteral("lvSearch"), QStringLiteral("Suchen"));
    lvSearch->setColumnCount(kSearchBoxColumn + 1);
    lvSearch->header()->moveSection(kSearchBoxColumn, 1);
    lvSearch->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    lvSearch->header()->setStretchLastSection(true);
    lvSearch->setUniformRowHeights(false);
    lvSearch->setSelectionMode(QAbstractItemView::NoSelection);
    lvSearch->setFocusPolicy(Qt::NoFocus);
    lvSearch->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lvSearch->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    const ViewCaptions captions = ViewCaptions::current();
    const QString names[4] = {captions.file, captions.disk, Translate(QStringLiteral("Dateipfad")),
                              Translate(QStringLiteral("Neue Dateien"))};
    int rowHeight = 0;
    for (int row = 0; row < 4; ++row) {
        auto* item = new QTreeWidgetItem(
            QStringList{names[row], QStringLiteral("SEARCH"), QString::number(row)});
        lvSearch->addTopLevelItem(item);
        QWidget* box = nullptr;
        if (row < 3) {
            auto* combo = new QComboBox(lvSearch);
            combo->setObjectName(QStringLiteral("cboSearch%1").arg(row));
            combo->setEditable(true);
            combo->setInsertPolicy(QComboBox::NoInsert);
            cboSearch[size_t(row)] = combo;
            box = combo;
        } else {
            chkNewFiles = new QCheckBox(lvSearch);
            chkNewFiles->setObjectName(QStringLiteral("chkNewFiles"));
            chkNewFiles->setAccessibleName(names[row]);
            box = chkNewFiles;
        }
        lvSearch->setItemWidget(item, kSearchBoxColumn, box);
        rowHeight = std::max(rowHeight, box->sizeHint().height());
    }
    // As high as its rows: the list never scrolls.
    lvSearch->setFixedHeight(lvSearch->header()->sizeHint().height() + 4 * (rowHeight + 2) +
                             2 * lvSearch->frameWidth());
    return lvSearch;
}

// ---- lvFilter -------------------------------------------------------------------------------

// Load step 16: the filter row of the last run is selected, and so applied by the first view;
// a row that is gone, or 0, selects "Filter aus".
void frmMain::selectLastFilterRow()
{
    int row = app::gLastFilterRow;
    if (row < 0 || row >= lvFilter->topLevelItemCount())
        row = 0;
    QTreeWidgetItem* item = lvFilter->topLevelItem(row);
    if (!item)
        return;
    lvFilter->setCurrentItem(item);
    iFilterKey = item->text(2).toInt(); // the hidden column Key
}

// ---- Menus -----------------------------------------------------------------------------------

void frmMain::connectWindowMenus()
{
    // mnuEdit is the context menu of the tree and both lists.
    connect(treeMain, &controls::UserTree::mouseUp, this, [this](int button, int, int, int) {
        if (button & 2)
            popupEditMenu();
    });
    connect(lstMain, &controls::ReportView::itemClick, this, [this](qint64, int button, int) {
        if (button == 2)
            popupEditMenu();
    });
    connect(lstMainFiles, &controls::SimpleReport::itemClick, this,
            [this](qint64, int button, int) {
                if (button == 2)
                    popupEditMenu();
            });

    setCommand(QStringLiteral("mnuEditHeader"), [this] { mnuEditHeader_Click(); });
    setCommand(QStringLiteral("mnuFind"), [this] { mnuFind_Click(); });
    setCommand(QStringLiteral("mnuLang"), [this] { mnuLang_Click(1); });
    setCommand(QStringLiteral("mnuHelp"), [this] { openWebPage(app::gHelpUrl); });
    setCommand(QStringLiteral("mnuHomepage"), [this] { openWebPage(app::gHomepageUrl); });
    setCommand(QStringLiteral("mnuLogo"), [this] {
        frmLogo logo(this);
        logo.exec();
    });
}

void frmMain::popupEditMenu()
{
    QAction* edit = m_entries.value(QStringLiteral("mnuEdit"));
    if (!app::gDB || !edit || !edit->menu())
        return;
    if (m_popupRunner)
        m_popupRunner(*edit->menu());
    else
        edit->menu()->exec(QCursor::pos());
}

void frmMain::mnuEditHeader_Click()
{
    if (!app::gDB)
        return;
    if (iViewMode == kViewMainFiles) {
        lstMainFiles->EditHeaders();
    } else {
        lstMain->EditHeaders();
        SetColumnsLayout();
    }
    SaveColumnLayout(); // the columns shown make sMainListColumns anew
}

void frmMain::mnuFind_Click()
{
    if (!app::gDB)
        return;
    if (iViewMode == kViewMainFiles)
        lstMainFiles->FindDialog(false, false);
    else
        lstMain->FindDialog(false, false);
}

// An address setting holds the German page, or the German and the English page joined by
// "|"; the English one serves while a language file is loaded.
void frmMain::openWebPage(const QString& addresses)
{
    const QStringList pages = addresses.split(QLatin1Char('|'));
    QString page = pages.value(0).trimmed();
    if (!app::gLanguageFile.isEmpty() && !pages.value(1).trimmed().isEmpty())
        page = pages.value(1).trimmed();
    if (!page.isEmpty())
        QDesktopServices::openUrl(QUrl::fromUserInput(page));
}

// Without an address the entry has nothing to open.
void frmMain::enableWebPages()
{
    setEntryEnabled(QStringLiteral("mnuHelp"), !app::gHelpUrl.trimmed().isEmpty());
    setEntryEnabled(QStringLiteral("mnuHomepage"), !app::gHomepageUrl.trimmed().isEmpty());
}

} // namespace vd::browser
