// frmMain: the tree and the lists of the views, the side lists lvViews and lvFilter, and what a
// selection in them does. BuildView (frmMainSearch.cpp) makes the statements; here they reach
// the controls, which run them and fetch only the rows on screen.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "app/ui/IconSet.h"
#include "browser/Filters.h"
#include "browser/ui/frmMain.h"
#include "catalogue/Database.h"
#include "controls/TreeItem.h"
#include "controls/ui/ReportView.h"
#include "controls/ui/SimpleReport.h"
#include "controls/ui/UserTree.h"
#include "import/clsFileManager.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyle>
#include <QTreeWidget>

namespace vd::browser {

using app::Translate;

namespace {

// Columns of the level statements of lstMain: ID, ParentKey, Icon, then the entry's name.
constexpr int kListID = 0;
constexpr int kListIcon = 2;
constexpr int kListFile = 3;
// Columns of the flat list of view 2: ID, iTyp, IsArchiv, Filetyp, Disc_File.
constexpr int kFilesID = 0;
constexpr int kFilesType = 1;
constexpr int kFilesName = 4;

// The side lists keep their key in the hidden third column, their image key in the second.
constexpr int kSideTyp = 1;
constexpr int kSideKey = 2;

// View 2: the type's icon, archived when the file lies inside an archive, and the archive's own
// icon (IsArchiv 24) in the column "Archivpfad".
constexpr int kFilesArchiv = 2;

void showArchiveIcons(controls::SimpleReport* list)
{
    controls::ReportColumns& columns = list->engine().Columns();
    const int typeColumn = columns.indexOf(Translate(QStringLiteral("Filetyp")));
    const int pathColumn = columns.indexOf(Translate(QStringLiteral("Archivpfad")));
    if (typeColumn >= 0)
        columns[typeColumn].fetchMode = true; // its icon comes through RowIcon
    if (pathColumn >= 0)
        columns[pathColumn].imageField = QStringLiteral("IsArchiv");
}

// An Escape in lvFilter turns the filter off.
class EscapeFilter : public QObject
{
public:
    EscapeFilter(QObject* parent, std::function<void()> onEscape)
        : QObject(parent), m_onEscape(std::move(onEscape))
    {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress &&
            static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            m_onEscape();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_onEscape;
};

} // namespace

QTreeWidget* frmMain::buildSideList(QWidget* panel, const QString& name, const QString& title)
{
    auto* list = new QTreeWidget(panel);
    list->setObjectName(name);
    list->setColumnCount(3);
    list->setHeaderLabels({Translate(title), QStringLiteral("Typ"), QStringLiteral("Key")});
    list->setColumnHidden(kSideTyp, true);
    list->setColumnHidden(kSideKey, true);
    list->setRootIsDecorated(false);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setUniformRowHeights(true);
    return list;
}

void frmMain::buildViewControls()
{
    m_icons = app::IconSet::imageList();

    treeMain = new controls::UserTree(splitList);
    treeMain->setObjectName(QStringLiteral("treeMain"));
    treeMain->setStandardIcons(m_icons);
    treeMain->setDblClickOnReturn(true);
    connect(treeMain, &controls::UserTree::selectionChange, this,
            &frmMain::treeMain_SelectionChange);
    connect(treeMain, &controls::UserTree::itemDblClick, this, &frmMain::treeMain_DblClick);
    connect(treeMain, &controls::UserTree::mouseUp, this,
            [this](int, int, int, int) { UpdateActions(QString()); });

    lstMain = new controls::ReportView(splitList);
    lstMain->setObjectName(QStringLiteral("lstMain"));
    controls::SimpleReport& report = lstMain->report();
    report.props().InvisibleCols = 3; // ID, ParentKey, Icon
    report.props().InvisibleColMode = 1;
    report.props().KeyColumn = kListID;
    report.props().ImageColumn = kListIcon; // the entry's name shows the file type's icon
    report.props().DblClickOnReturn = true;
    report.setFilterColumn(1); // a tree node narrows level 2 to its children by ParentKey
    report.setIcons(m_icons);
    lstMain->setDblClickMode(1); // a double click starts, it does not go down a level
    connect(lstMain, &controls::ReportView::selectionChange, this,
            [this] { UpdateActions(QStringLiteral("lstMain")); });
    connect(lstMain, &controls::ReportView::itemDblClick, this,
            [this] { StartSelected(QString()); });
    connect(lstMain, &controls::ReportView::fetchColumnLayout, this, [this](QString& layout) {
        const QString stored = ViewLayout(app::gListLayouts, iViewMode);
        if (!stored.isEmpty())
            layout = stored;
    });
    connect(lstMain, &controls::ReportView::fetchColumn, this, [this](int& colIndex) {
        if (iViewMode == kViewFiles || iViewMode == kViewCategories || iViewMode == kViewNewFiles)
            colIndex = kListFile;
    });

    lstMainFiles = new controls::SimpleReport(m_listPages);
    lstMainFiles->setObjectName(QStringLiteral("lstMainFiles"));
    lstMainFiles->props().InvisibleCols = 3; // ID, iTyp, IsArchiv
    lstMainFiles->props().InvisibleColMode = 1;
    lstMainFiles->props().KeyColumn = kFilesID;
    lstMainFiles->props().ImageColumn = kFilesType;
    lstMainFiles->setIcons(m_icons);
    m_listPages->addWidget(lstMainFiles);
    connect(lstMainFiles, &controls::SimpleReport::selectionChange, this,
            [this] { UpdateActions(QStringLiteral("lstMain")); });
    connect(lstMainFiles, &controls::SimpleReport::fetchContents, this,
            [this](qint64 row, int, QVariant&, QVariant& icon) {
                if (!icon.isNull())
                    icon = app::RowIcon(
                        icon.toInt(), lstMainFiles->engine().cellValue(row, kFilesArchiv).toInt());
            });

    for (int i = 0; i < 6; ++i) {
        const QString name = QStringLiteral("mnuView%1").arg(i);
        setCommand(name, [this, i] { mnuView_Click(i); });
        m_entries.value(name)->setCheckable(true);
    }
    connect(lvViews, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* item) { lvViews_Click(lvViews->indexOfTopLevelItem(item)); });
    connect(lvFilter, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* item) { lvFilter_Click(lvFilter->indexOfTopLevelItem(item)); });
    lvFilter->installEventFilter(new EscapeFilter(lvFilter, [this] {
        if (iFilterKey == 0 || lvFilter->topLevelItemCount() == 0)
            return;
        lvFilter->setCurrentItem(lvFilter->topLevelItem(0));
        lvFilter_Click(0);
    }));
}

// Load step 26: imgMain went to the tree and the lists as they were made.
void frmMain::setupImageLists() {}

// Load step 15: the six views in lvViews; lvSearch's captions stand in the search boxes'
// place holders.
void frmMain::setupSideLists()
{
    fillViewsList();
    const QString captions[3] = {ViewCaptions::current().file, ViewCaptions::current().disk,
                                 Translate(QStringLiteral("Dateipfad"))};
    for (size_t i = 0; i < cboSearch.size(); ++i)
        cboSearch[i]->lineEdit()->setPlaceholderText(captions[i]);
}

void frmMain::fillViewsList()
{
    lvViews->clear();
    for (int row = 0; row < 6; ++row) {
        const int view = ViewOfRow(row);
        auto* item = new QTreeWidgetItem(
            QStringList{ViewName(view), ViewImageKey(view), QString::number(view)});
        item->setIcon(0, app::IconSet::keyIcon(ViewImageKey(view)));
        lvViews->addTopLevelItem(item);
    }
}

// Load step 16: the filters of MAIN (the defaults when it holds none) and their rows.
void frmMain::loadCatalogueFilters()
{
    LoadMainFilters();
    fillFilterList();
}

void frmMain::fillFilterList()
{
    lvFilter->clear();
    auto* off = new QTreeWidgetItem(
        QStringList{Translate(QStringLiteral("Filter aus")), QStringLiteral("OFF"), "0"});
    off->setIcon(0, app::IconSet::keyIcon(QStringLiteral("OFF")));
    lvFilter->addTopLevelItem(off);
    QTreeWidgetItem* selected = off;
    for (int i = 0; i < gFilters.count(); ++i) {
        CreateFilter(gFilters.at(i), false);
        if (gFilters.at(i).Key == iFilterKey)
            selected = lvFilter->topLevelItem(lvFilter->topLevelItemCount() - 1);
    }
    if (selected == off)
        iFilterKey = 0; // the filter that was selected is gone
    lvFilter->setCurrentItem(selected);
}

void frmMain::lvViews_Click(int row)
{
    if (row < 0 || !app::gDB)
        return;
    const int view = ViewOfRow(row);
    if (view != iViewMode)
        BuildView(view, 0, 0);
}

void frmMain::mnuView_Click(int index)
{
    if (QTreeWidgetItem* item = lvViews->topLevelItem(index))
        lvViews->setCurrentItem(item);
    lvViews_Click(index);
}

void frmMain::lvFilter_Click(int row)
{
    const QTreeWidgetItem* item = lvFilter->topLevelItem(row);
    if (!item || !app::gDB)
        return;
    const int key = item->text(kSideKey).toInt();
    // A second click on the selected filter opens the filter editor.
    if (key == iFilterKey) {
        mnuFilter_Click();
        return;
    }
    iFilterKey = key;
    BuildView(0, 0, 0);
}

// Steps 18 to 24 of BuildView: the statements go to the controls of the view.
void frmMain::feedViewControls(int keepTree)
{
    db::Database* db = app::gDB.get();
    const bool mainFiles = iViewMode == kViewMainFiles;
    if (mainFiles) {
        // The old statement goes before the database is set: setting it would run that
        // statement again and size its columns over every row while the list is hidden.
        lstMainFiles->setAutoRefresh(false);
        lstMainFiles->setRecordSource(QString());
        if (lstMainFiles->engine().DataBase() != db)
            lstMainFiles->setDataBase(db);
        lstMainFiles->setLayout(ViewLayout(app::gListLayouts, kViewMainFiles));
        showMainFiles(true); // shown first: the list loads the rows that fit on screen
        lstMainFiles->setRecordSource(m_viewSql.recordSource);
        showArchiveIcons(lstMainFiles);
        lstMainFiles->setAutoRefresh(true);
    } else {
        showMainFiles(false);
        const bool refresh = lstMain->AutoRefresh();
        lstMain->setAutoRefresh(false);
        if (lstMain->DataBase() != db)
            lstMain->setDataBase(db);
        lstMain->report().props().SortMode = m_viewSql.sortMode;
        lstMain->levels().Setup(m_viewSql.listLevels);
        if (keepTree == 0) {
            if (treeMain->DataBase() != db)
                treeMain->setDataBase(db);
            treeMain->levels()->Setup(m_viewSql.treeLevels);
            if (const controls::TreeItemP root = treeMain->TreeItems(0))
                treeMain->ToggleItem(root, controls::UserTree::ExpandOnly);
        } else {
            // The tree stays; the list shows the node that is selected again.
            bRefreshing = true;
            treeMain_SelectionChange();
            bRefreshing = false;
        }
        lstMain->setAutoRefresh(refresh);
    }
    for (int i = 0; i < 6; ++i)
        m_entries.value(QStringLiteral("mnuView%1").arg(i))->setChecked(ViewOfRow(i) == iViewMode);
    if (QTreeWidgetItem* row = lvViews->topLevelItem(ViewRow(iViewMode)))
        lvViews->setCurrentItem(row);
    UpdateActions(QString());
    ShowCounts(true);
}

// Step 23: view 2 shows the flat list in splitList's place; mnuHideTree has no tree there.
void frmMain::showMainFiles(bool on)
{
    m_entries.value(QStringLiteral("mnuHideTree"))->setEnabled(!on && app::gDB != nullptr);
    m_listPages->setCurrentWidget(on ? static_cast<QWidget*>(lstMainFiles) : splitList);
}

void frmMain::treeMain_SelectionChange()
{
    if (iViewMode == kViewMainFiles || !treeMain->ready())
        return;
    const controls::TreeItemP item = treeMain->SelectedItem();
    if (!item)
        return;
    // Another level of the list has columns of its own: the widths carry over to it.
    ColumnWidths widths;
    if (!bRefreshing && item->Level != lstMain->CurLevel())
        widths = fetchColumnWidths();
    const bool refresh = lstMain->AutoRefresh();
    lstMain->setAutoRefresh(false);
    lstMain->Synchronize(item);
    // A file's entries come in directory order.
    if ((iViewMode == kViewFiles || iViewMode == kViewNewFiles) && item->Level >= 2) {
        const int index = lstMain->Columns().indexOf(QStringLiteral("lIndex"));
        if (index >= 0)
            lstMain->Resort(index, true);
        lstMain->report().props().SortMode = 0;
    }
    RestoreColumnWidths(widths, !m_viewSql.withCategory);
    SetColumnsLayout();
    lstMain->setAutoRefresh(refresh);
    UpdateActions(QString());
}

void frmMain::treeMain_DblClick()
{
    const controls::TreeItemP item = treeMain->SelectedItem();
    if (!item)
        return;
    // Level 2 runs the edit command: a file's properties, a category's new name.
    if (item->Level == 2)
        mnuDetails_Click();
    else if (item->Level == 3)
        StartSelected(QString());
}

// Steps 1 to 3 of UpdateActions: the selected tree node or list row.
void frmMain::readSelection(const QString& sender)
{
    m_selection = Selection();
    Selection& s = m_selection;
    QString tag = QStringLiteral("0");
    if (!app::gDB) {
    } else if (iViewMode != kViewMainFiles) {
        const bool listActive = sender == QLatin1String("lstMain") || lstMain->hasFocus() ||
                                lstMain->report().hasFocus();
        if (!listActive) {
            if (const controls::TreeItemP item =
                    treeMain->ready() ? treeMain->SelectedItem() : nullptr) {
                if (item->Level == 2) {
                    s.bDelete = s.bDetails = true;
                    if (iViewMode != kViewCategories) {
                        s.bFile = s.bStart = true;
                        tag = QStringLiteral("-") + item->Key;
                    }
                } else if (item->Level == 3) {
                    s.bDelete = s.bDetails = s.bStart = true;
                    tag = item->Key;
                }
                ShowStatus(item->Caption);
                s.iType = item->Icon;
            }
        } else if (lstMain->SelectedIndex() >= 0) {
            s.bDelete = s.bDetails = s.bStart = true;
            ShowStatus(lstMain->FieldValue(kListFile).toString());
            tag = lstMain->FieldValue(kListID).toString();
            s.iType = lstMain->FieldValue(kListIcon).toInt();
        }
    } else if (lstMainFiles->SelectedIndex() >= 0) {
        s.bDelete = s.bDetails = s.bFile = s.bStart = true;
        ShowStatus(lstMainFiles->engine().FieldValue(kFilesName).toString());
        tag = QStringLiteral("-") + lstMainFiles->engine().FieldValue(kFilesID).toString();
        s.iType = lstMainFiles->engine().FieldValue(kFilesType).toInt();
    }
    m_panels.value(QStringLiteral("INFO"))->setProperty("tag", tag);
}

void frmMain::ShowCounts(bool force)
{
    const qint64 files = gFileManager ? gFileManager->lCategoryCount : 0;
    const qint64 entries = gFileManager ? gFileManager->lC64FileCount : 0;
    QLabel* sumFiles = m_panels.value(QStringLiteral("SumFiles"));
    if (iViewMode == kViewMainFiles) {
        sumFiles->setText(ViewCaptions::current().disks + QStringLiteral(": ") +
                          QString::number(lstMainFiles->ItemCount()) + QLatin1Char('/') +
                          QString::number(files));
        return;
    }
    const controls::TreeItemP root = treeMain->ready() ? treeMain->TreeItems(0) : nullptr;
    if (force && root && root->Expanded()) {
        if (iViewMode == kViewCategories)
            sumFiles->setText(Translate(QStringLiteral("Kategorien: ")) +
                              QString::number(root->SubItemCount()));
        else if (iViewMode == kViewFiles || iViewMode == kViewNewFiles)
            sumFiles->setText(ViewCaptions::current().disks + QStringLiteral(": ") +
                              QString::number(root->SubItemCount()) + QLatin1Char('/') +
                              QString::number(files));
    }
    m_panels.value(QStringLiteral("SumList"))
        ->setText(Translate(QStringLiteral("Dateien: ")) + QString::number(lstMain->ItemCount()) +
                  QLatin1Char('/') + QString::number(entries));
}

// Step 25: how long the rebuild took, behind the view's name.
void frmMain::showDuration(qint64 ms)
{
    const QTreeWidgetItem* row = lvViews->currentItem();
    if (!row)
        return;
    const double seconds = double(ms) / 1000.0;
    QString time;
    if (seconds < 60) {
        time = QString::number(seconds, 'f', 2) + QStringLiteral("s)");
    } else {
        const qint64 whole = ms / 1000;
        time = QStringLiteral("%1:%2)")
                   .arg(whole / 60, 2, 10, QLatin1Char('0'))
                   .arg(whole % 60, 2, 10, QLatin1Char('0'));
    }
    ShowStatus(Translate(QStringLiteral("Dauer:")) + QLatin1Char(' ') + row->text(0) +
               QStringLiteral(" (") + time);
}

} // namespace vd::browser
