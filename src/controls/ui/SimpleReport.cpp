#include "controls/ui/SimpleReport.h"

#include "app/Translate.h"
#include "controls/ui/frmColumnHeader.h"
#include "controls/ui/frmSearch.h"
#include "controls/ui/FrozenColumns.h"
#include "platform/DialogService.h"

#include <QApplication>
#include <QCursor>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QTimer>

namespace vd::controls {

namespace {

int buttonCode(Qt::MouseButton b)
{
    switch (b) {
    case Qt::RightButton:
        return ReportEngine::RightButton;
    case Qt::MiddleButton:
        return ReportEngine::MiddleButton;
    default:
        return ReportEngine::LeftButton;
    }
}

// The key state of the designed events: 1 Shift, 2 Ctrl, 4 Alt.
int shiftCode(Qt::KeyboardModifiers m)
{
    return (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) |
           (m & Qt::AltModifier ? 4 : 0);
}

} // namespace

// --- the view ------------------------------------------------------------------------------

SimpleReport::SimpleReport(QWidget* parent)
    : QTableView(parent), m_engine(this), m_model(new ReportModel(this)), m_frozen(nullptr)
{
    setModel(m_model);
    // By pixels, so that columns slide under the frozen ones.
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setWordWrap(false);
    setShowGrid(false);
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(std::max(16, fontMetrics().height() + 4));
    // Sizing a column to its contents measures the rows on screen: the others are not in
    // memory, and a long list would be read page by page for it.
    horizontalHeader()->setResizeContentsPrecision(0);
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setHighlightSections(false);
    // Clicks are ours: the header neither selects a column nor flips the sort picture.
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->viewport()->installEventFilter(this);
    m_frozen = new FrozenColumnView(this);
    m_frozen->horizontalHeader()->viewport()->installEventFilter(this);
    m_frozen->viewport()->installEventFilter(this);
    connect(m_frozen, &FrozenColumnView::cellPressed, this, &SimpleReport::cellPressed);
    connect(m_frozen, &FrozenColumnView::cellDoubleClicked, this,
            [this](const QModelIndex& i) { emit itemDblClick(i.row(), 1, 0); });
    connect(m_frozen->horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int section, int, int size) {
                if (!m_applying && columnWidth(section) != size)
                    horizontalHeader()->resizeSection(section, size);
            });
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int section) {
        syncColumnsFromHeader();
        if (m_frozen->isFrozen(section)) {
            m_frozen->setColumnWidth(section, columnWidth(section));
            m_frozen->place();
        }
    });
    connect(horizontalHeader(), &QHeaderView::sectionMoved, this, [this] {
        syncColumnsFromHeader();
        // A column dragged in front of the frozen ones would lie under them.
        if (!m_applying && !fixedColumnsFirst())
            QTimer::singleShot(0, this, [this] { applyColumns(); });
    });
    m_menuRunner = [](QMenu& menu) { return menu.exec(QCursor::pos()); };
    m_engine.props().RowHeight = verticalHeader()->defaultSectionSize();
    m_engine.setShown(false);
}

SimpleReport::~SimpleReport()
{
    m_engine.setEvents(nullptr);
}

void SimpleReport::setRecordSource(const QString& sql)
{
    m_engine.setShown(isVisible());
    m_engine.setViewHeight(viewport()->height());
    setMultiSelect();
    m_engine.setRecordSource(sql);
    repaint();
}

void SimpleReport::Setup(const QString& recordSource, int invisCols, int invisColMode,
                         const QString& layout, int imageColumn, bool translateIcons, int keyColumn,
                         int filterColumn)
{
    m_engine.setShown(isVisible());
    m_engine.setViewHeight(viewport()->height());
    setMultiSelect();
    m_engine.Setup(recordSource, invisCols, invisColMode, layout, imageColumn, translateIcons,
                   keyColumn, filterColumn);
    repaint();
}

void SimpleReport::setMultiSelect()
{
    setSelectionMode(props().MultiSelect ? QAbstractItemView::ExtendedSelection
                                         : QAbstractItemView::SingleSelection);
    setShowGrid(props().GridLines);
}

void SimpleReport::Requery()
{
    m_engine.Requery();
}

void SimpleReport::setFilterValue(const QVariant& value)
{
    m_engine.setShown(isVisible());
    m_engine.setFilterValue(value);
    repaint();
}

void SimpleReport::setAutoRefresh(bool on)
{
    m_engine.setAutoRefresh(on);
    // Off, nothing is painted: the rows of the statement on the way are not shown half made.
    viewport()->setUpdatesEnabled(on);
    m_frozen->viewport()->setUpdatesEnabled(on);
    if (on && m_dirty)
        repaint();
}

QString SimpleReport::Layout()
{
    syncColumnsFromHeader();
    return m_engine.Columns().layout();
}

void SimpleReport::setLayout(const QString& layout)
{
    m_engine.setLayout(layout);
    if (m_model->inStep())
        applyColumns();
}

ReportColumns& SimpleReport::Columns()
{
    syncColumnsFromHeader();
    return m_engine.Columns();
}

void SimpleReport::columnsChanged()
{
    if (m_model->inStep())
        applyColumns();
    viewport()->update();
}

void SimpleReport::setSelectedIndex(qint64 row)
{
    m_engine.setSelectedIndex(row);
    syncCurrentRow();
}

QList<cListItem> SimpleReport::SelectedItems()
{
    QList<cListItem> items;
    const auto rows = selectionModel()->selectedRows();
    const int captionColumn = m_engine.firstVisibleColumn();
    for (const QModelIndex& i : rows) {
        cListItem item;
        item.Row = i.row();
        if (props().KeyColumn >= 0)
            item.Key = m_engine.FieldValue(props().KeyColumn, item.Row);
        if (captionColumn < m_engine.Columns().count())
            item.Caption = cellText(item.Row, captionColumn);
        items << item;
    }
    std::sort(items.begin(), items.end(),
              [](const cListItem& a, const cListItem& b) { return a.Row < b.Row; });
    return items;
}

bool SimpleReport::ItemSelected(qint64 row) const
{
    return selectionModel()->isRowSelected(int(row), {});
}

void SimpleReport::setItemSelected(qint64 row, bool on)
{
    if (row < 0 || row >= m_engine.ItemCount())
        return;
    if (!props().MultiSelect) {
        if (on)
            setSelectedIndex(row);
        return;
    }
    selectionModel()->select(m_model->index(int(row), 0),
                             (on ? QItemSelectionModel::Select : QItemSelectionModel::Deselect) |
                                 QItemSelectionModel::Rows);
}

void SimpleReport::ClearSelection()
{
    clearSelection();
}

// --- columns -------------------------------------------------------------------------------

void SimpleReport::applyColumns()
{
    m_applying = true;
    QHeaderView* h = horizontalHeader();
    const ReportColumns& cols = m_engine.Columns();
    for (int i = 0; i < cols.count() && i < h->count(); ++i) {
        h->setSectionHidden(i, cols[i].hidden != 0);
        h->resizeSection(i, cols[i].width);
    }
    // Fixed columns lead, so that the frozen view covers exactly them.
    QList<int> order = cols.displayOrder();
    std::stable_partition(order.begin(), order.end(),
                          [&cols](int c) { return cols[c].fixed == 2; });
    for (int pos = 0; pos < order.size() && order[pos] < h->count(); ++pos)
        h->moveSection(h->visualIndex(order[pos]), pos);
    QList<int> frozen;
    for (int c : std::as_const(order))
        if (c < h->count() && cols[c].fixed == 2 && cols[c].hidden == 0)
            frozen << c;
    m_frozen->setFrozen(frozen);
    h->setSortIndicatorShown(false);
    for (int i = 0; i < cols.count(); ++i)
        if (cols[i].sortPicture != 0) {
            h->setSortIndicator(i, cols[i].sortPicture == -2 ? Qt::AscendingOrder
                                                             : Qt::DescendingOrder);
            h->setSortIndicatorShown(true);
        }
    m_applying = false;
}

bool SimpleReport::fixedColumnsFirst() const
{
    const ReportColumns& cols = m_engine.Columns();
    const QHeaderView* h = horizontalHeader();
    int fixed = 0;
    for (int c = 0; c < cols.count(); ++c)
        fixed += cols[c].fixed == 2 ? 1 : 0;
    for (int v = 0; v < fixed && v < h->count(); ++v) {
        const int c = h->logicalIndex(v);
        if (c < 0 || c >= cols.count() || cols[c].fixed != 2)
            return false;
    }
    return true;
}

void SimpleReport::toggleFixed(int col)
{
    syncColumnsFromHeader();
    ReportColumn& c = m_engine.Columns()[col];
    c.fixed = c.fixed == 2 ? 0 : 2;
    applyColumns();
    syncColumnsFromHeader();
}

void SimpleReport::syncColumnsFromHeader()
{
    // A header that still shows the previous statement has nothing to tell.
    if (m_applying || m_dirty || !m_model->inStep())
        return;
    QHeaderView* h = horizontalHeader();
    ReportColumns& cols = m_engine.Columns();
    for (int i = 0; i < cols.count() && i < h->count(); ++i) {
        ReportColumn& c = cols[i];
        if (!h->isSectionHidden(i))
            c.width = h->sectionSize(i);
        if (h->isSectionHidden(i) && c.hidden == 0)
            c.hidden = 1;
        else if (!h->isSectionHidden(i) && c.hidden == 1)
            c.hidden = 0;
        c.order = h->visualIndex(i);
    }
}

void SimpleReport::autoSizeColumns(int column, int mode)
{
    (void)mode;
    if (m_dirty || !m_model->inStep()) {
        // Columns of a statement the view does not show yet: sized when it does.
        m_autoSizeColumn = m_autoSizePending && m_autoSizeColumn != column ? -1 : column;
        m_autoSizePending = true;
        return;
    }
    if (column >= 0 && column < m_model->columnCount())
        resizeColumnToContents(column);
    else
        resizeColumnsToContents();
    syncColumnsFromHeader();
}

// --- the engine's events -------------------------------------------------------------------

void SimpleReport::repaint()
{
    if (!m_engine.autoRefresh()) {
        m_dirty = true;
        return;
    }
    m_dirty = false;
    m_styles.clear();
    m_syncing = true;
    m_model->refresh();
    applyColumns();
    if (m_autoSizePending) {
        m_autoSizePending = false;
        autoSizeColumns(m_autoSizeColumn, 0);
    }
    m_syncing = false;
    syncCurrentRow();
    viewport()->update();
}

void SimpleReport::syncCurrentRow()
{
    const qint64 row = m_engine.SelectedIndex();
    const QModelIndex want =
        row >= 0 ? m_model->index(int(row), std::max(0, m_engine.firstVisibleColumn()))
                 : QModelIndex();
    if (currentIndex().row() == want.row() &&
        (want.isValid() ? selectionModel()->isRowSelected(want.row(), {})
                        : !currentIndex().isValid()))
        return;
    m_syncing = true;
    if (want.isValid()) {
        selectionModel()->setCurrentIndex(want, QItemSelectionModel::ClearAndSelect |
                                                    QItemSelectionModel::Rows);
        scrollTo(want);
    } else {
        selectionModel()->clear();
    }
    m_syncing = false;
}

void SimpleReport::SelectionChange()
{
    syncCurrentRow();
    emit selectionChange();
}

void SimpleReport::ColumnClick(int colIndex, int button, int keyState)
{
    emit columnClick(colIndex, button, keyState);
}

void SimpleReport::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTableView::currentChanged(current, previous);
    if (!m_syncing && current.isValid())
        m_engine.setSelectedIndex(current.row());
}

// --- header --------------------------------------------------------------------------------

bool SimpleReport::eventFilter(QObject* watched, QEvent* event)
{
    static QPoint pressedAt;
    const bool press = event->type() == QEvent::MouseButtonPress;
    const bool release = event->type() == QEvent::MouseButtonRelease;
    QHeaderView* header = watched == horizontalHeader()->viewport() ? horizontalHeader()
                          : watched == m_frozen->horizontalHeader()->viewport()
                              ? m_frozen->horizontalHeader()
                              : nullptr;
    if (header && (press || release)) {
        const auto* me = static_cast<QMouseEvent*>(event);
        if (press) {
            pressedAt = me->position().toPoint();
        } else if ((me->position().toPoint() - pressedAt).manhattanLength() <
                   QApplication::startDragDistance()) {
            const int section = header->logicalIndexAt(me->position().toPoint());
            if (section >= 0)
                headerReleased(section, me->button());
        }
    }
    if (watched == m_frozen->viewport() && event->type() == QEvent::ToolTip &&
        showCellTip(static_cast<QHelpEvent*>(event), m_frozen))
        return true;
    return QTableView::eventFilter(watched, event);
}

void SimpleReport::updateGeometries()
{
    QTableView::updateGeometries();
    if (m_frozen)
        m_frozen->place();
}

void SimpleReport::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    const int sideways = horizontalScrollBar()->value();
    QTableView::scrollTo(index, hint);
    if (!index.isValid() || !m_frozen || m_frozen->frozenColumns().isEmpty())
        return;
    if (m_frozen->isFrozen(index.column())) {
        // A frozen cell is always in sight: only the rows move.
        horizontalScrollBar()->setValue(sideways);
        return;
    }
    const int covered = m_frozen->frozenWidth() - visualRect(index).left();
    if (covered > 0)
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - covered);
}

void SimpleReport::headerReleased(int section, Qt::MouseButton button)
{
    const auto action = m_engine.columnClicked(section, buttonCode(button),
                                               shiftCode(QApplication::keyboardModifiers()));
    if (action == ReportEngine::HeaderAction::Sorted)
        applyColumns();
}

void SimpleReport::openHeaderMenu(int colIndex)
{
    QMenu menu(this);
    fillHeaderMenu(menu, colIndex);
    QAction* chosen = m_menuRunner(menu);
    if (!chosen)
        return;
    const QString name = chosen->objectName();
    ReportColumns& cols = m_engine.Columns();
    if (name == QLatin1String("mnuSortAsc") || name == QLatin1String("mnuSortDesc")) {
        m_engine.Resort(colIndex, name == QLatin1String("mnuSortAsc"));
        applyColumns();
    } else if (name == QLatin1String("mnuFind")) {
        FindDialog(objectName() == QLatin1String("SimpleReport"), false, colIndex);
    } else if (name == QLatin1String("mnuCopyAll") || name == QLatin1String("mnuCopySel")) {
        CopyToClipboard(name == QLatin1String("mnuCopySel"));
    } else if (name == QLatin1String("mnuAutoSize")) {
        m_engine.AutoSizeColumns(colIndex);
    } else if (name == QLatin1String("mnuHide")) {
        syncColumnsFromHeader();
        cols[colIndex].hidden = 1;
        applyColumns();
    } else if (name == QLatin1String("mnuFix")) {
        toggleFixed(colIndex);
    } else if (name == QLatin1String("mnuFirst") || name == QLatin1String("mnuLast")) {
        syncColumnsFromHeader();
        const int to = name == QLatin1String("mnuFirst") ? 0 : cols.count() - 1;
        horizontalHeader()->moveSection(horizontalHeader()->visualIndex(colIndex), to);
    } else if (name == QLatin1String("mnuConfig")) {
        EditHeaders(m_gbSource.isValid() ? ColumnEditor::kGBView : QString());
    }
}

void SimpleReport::EditHeaders(const QString& tView)
{
    syncColumnsFromHeader();
    frmColumnHeader dialog(this, tView, m_gbSource, this);
    dialog.exec();
}

void SimpleReport::FindDialog(bool modal, bool useSelection, int column)
{
    try {
        auto* dialog = new frmSearch(this, this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        const int start = column >= 0 ? column : m_engine.firstVisibleColumn();
        dialog->setField(start);
        if (useSelection && SelectedIndex() >= 0 && start < m_engine.Columns().count())
            dialog->setSearchText(cellText(SelectedIndex(), start));
        if (modal)
            dialog->exec();
        else
            dialog->show();
    } catch (const std::exception& e) {
        platform::dialogs().msgBox(app::Translate(QStringLiteral("FindDialog-Fehler: ")) +
                                       QString::fromLocal8Bit(e.what()),
                                   platform::vbCritical);
    }
}

void SimpleReport::fillHeaderMenu(QMenu& menu, int col)
{
    auto add = [](QMenu& m, const char* name, const char* text) {
        QAction* a = m.addAction(app::Translate(QString::fromUtf8(text)));
        a->setObjectName(QLatin1String(name));
        return a;
    };
    const bool sortable = props().SortMode == 0 || props().SortMode == 2;
    add(menu, "mnuSortAsc", "Aufsteigend sortieren")->setEnabled(sortable);
    add(menu, "mnuSortDesc", "Absteigend sortieren")->setEnabled(sortable);
    menu.addSeparator();
    add(menu, "mnuFind", "Suchen");
    QMenu* copy = menu.addMenu(app::Translate(QStringLiteral("Kopieren")));
    copy->setObjectName(QStringLiteral("mnuCopy"));
    add(*copy, "mnuCopyAll", "Gesamte Liste");
    add(*copy, "mnuCopySel", "Aktuelle Selektion");
    menu.addSeparator();
    add(menu, "mnuAutoSize", "Optimale Spaltenbreite");
    const ReportColumn& c = m_engine.Columns()[col];
    add(menu, "mnuHide", "Spalte ausblenden")->setEnabled(!c.noHide);
    QAction* fix = add(menu, "mnuFix", "Spalte fixieren");
    fix->setCheckable(true);
    fix->setChecked(c.fixed == 2);
    add(menu, "mnuFirst", "An den Anfang positionieren");
    add(menu, "mnuLast", "Am Ende positionieren");
    menu.addSeparator();
    add(menu, "mnuConfig", "Konfiguration");
}

// --- keys and mouse ------------------------------------------------------------------------

void SimpleReport::keyPressEvent(QKeyEvent* event)
{
    const auto mods = event->modifiers() & ~Qt::KeypadModifier;
    if (mods == Qt::ControlModifier && event->key() == Qt::Key_C && props().EnableHotKeys) {
        CopyToClipboard(false);
        return;
    }
    if (event->matches(QKeySequence::Copy)) {
        emit keydown(event->key(), shiftCode(mods)); // the view would copy one cell
        return;
    }
    if (event->key() == Qt::Key_Escape)
        m_copyStop = true;
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (mods == Qt::NoModifier && isReturn && props().DblClickOnReturn && SelectedIndex() >= 0) {
        emit itemDblClick(SelectedIndex(), 1, 0);
        return;
    }
    const QString text = event->text();
    if (!(mods & (Qt::ControlModifier | Qt::AltModifier)) && text.size() == 1 &&
        text[0].isPrint() && !text[0].isSpace() &&
        m_engine.typeAhead(text[0], mods & Qt::ShiftModifier, false))
        return;
    emit keydown(event->key(), shiftCode(mods));
    QTableView::keyPressEvent(event);
}

void SimpleReport::mousePressEvent(QMouseEvent* event)
{
    QTableView::mousePressEvent(event);
    const QModelIndex i = indexAt(event->position().toPoint());
    if (i.isValid())
        cellPressed(i, event->button(), event->modifiers());
}

void SimpleReport::cellPressed(const QModelIndex& index, Qt::MouseButton button,
                               Qt::KeyboardModifiers mods)
{
    emit itemClick(index.row(), buttonCode(button), shiftCode(mods));
    emit itemClickEx(index.row(), index.column(), buttonCode(button), shiftCode(mods));
}

void SimpleReport::mouseDoubleClickEvent(QMouseEvent* event)
{
    QTableView::mouseDoubleClickEvent(event);
    const QModelIndex i = indexAt(event->position().toPoint());
    if (i.isValid())
        emit itemDblClick(i.row(), 1, 0);
}

void SimpleReport::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    m_engine.setViewHeight(viewport()->height());
}

void SimpleReport::showEvent(QShowEvent* event)
{
    QTableView::showEvent(event);
    m_engine.setShown(true);
    m_engine.setViewHeight(viewport()->height());
    if (!m_engine.RecordSet() && !m_engine.RecordSource().isEmpty() && m_engine.DataBase()) {
        m_engine.Load();
        repaint();
    }
}

} // namespace vd::controls
