#include "controls/ui/SimpleReport.h"

#include "app/Translate.h"
#include "catalogue/JetFunctions.h"
#include "platform/DialogService.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>

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

Qt::Alignment alignmentOf(ColumnAlign a)
{
    switch (a) {
    case ColumnAlign::Right:
        return Qt::AlignRight | Qt::AlignVCenter;
    case ColumnAlign::Center:
        return Qt::AlignHCenter | Qt::AlignVCenter;
    default:
        return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

QString oneLine(QString text)
{
    for (QChar c : {QChar(u'\r'), QChar(u'\n'), QChar(u'\t')})
        text.replace(c, QLatin1Char(' '));
    return text;
}

} // namespace

// --- the model -----------------------------------------------------------------------------

ReportModel::ReportModel(SimpleReport* report) : QAbstractTableModel(report), m_report(report) {}

int ReportModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int ReportModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_cols;
}

QVariant ReportModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows || index.column() >= m_cols)
        return {};
    const auto& col = m_report->engine().Columns()[index.column()];
    switch (role) {
    case Qt::DisplayRole:
        return m_report->cellText(index.row(), index.column());
    case Qt::DecorationRole:
        return col.imageField.isEmpty() ? QVariant()
                                        : QVariant(m_report->cellIcon(index.row(), index.column()));
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(alignmentOf(col.alignment));
    default:
        return {};
    }
}

QVariant ReportModel::headerData(int section, Qt::Orientation o, int role) const
{
    if (o != Qt::Horizontal || section < 0 || section >= m_cols)
        return {};
    const auto& col = m_report->engine().Columns()[section];
    if (role == Qt::DisplayRole)
        return col.caption;
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(alignmentOf(col.headerAlignment));
    return {};
}

bool ReportModel::refresh()
{
    auto& engine = m_report->engine();
    const int rows = int(std::min<qint64>(engine.ItemCount(), INT_MAX));
    const int cols = engine.Columns().count();
    if (rows != m_rows || cols != m_cols) {
        beginResetModel();
        m_rows = rows;
        m_cols = cols;
        endResetModel();
        return true;
    }
    if (rows > 0 && cols > 0)
        emit dataChanged(index(0, 0), index(rows - 1, cols - 1));
    emit headerDataChanged(Qt::Horizontal, 0, std::max(0, cols - 1));
    return false;
}

// --- the view ------------------------------------------------------------------------------

SimpleReport::SimpleReport(QWidget* parent)
    : QTableView(parent), m_engine(this), m_model(new ReportModel(this))
{
    setModel(m_model);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setWordWrap(false);
    setShowGrid(false);
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(std::max(16, fontMetrics().height() + 4));
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setHighlightSections(false);
    // Clicks are ours: the header neither selects a column nor flips the sort picture.
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->viewport()->installEventFilter(this);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this,
            [this] { syncColumnsFromHeader(); });
    connect(horizontalHeader(), &QHeaderView::sectionMoved, this,
            [this] { syncColumnsFromHeader(); });
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

QString SimpleReport::Layout()
{
    syncColumnsFromHeader();
    return m_engine.Columns().layout();
}

void SimpleReport::setLayout(const QString& layout)
{
    m_engine.setLayout(layout);
    applyColumns();
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
    for (const QModelIndex& i : rows) {
        cListItem item;
        item.Row = i.row();
        if (props().KeyColumn >= 0)
            item.Key = m_engine.FieldValue(props().KeyColumn, item.Row);
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

// --- cells ---------------------------------------------------------------------------------

QString SimpleReport::formatValue(const QVariant& v, const ReportColumn& c) const
{
    if (v.isNull())
        return {};
    if (c.format == QLatin1String("Yes/No"))
        return v.toBool() ? QStringLiteral("Yes") : QStringLiteral("No");
    if (c.format.isEmpty() || c.format == QLatin1String("RPL") || v.typeId() == QMetaType::QString)
        return oneLine(v.toString());
    return db::vbFormat(v, c.format);
}

QString SimpleReport::cellText(qint64 row, int column)
{
    const ReportColumn& c = m_engine.Columns()[column];
    QVariant value = m_engine.cellValue(row, column);
    if (c.fetchMode) {
        QVariant image;
        m_engine.cellContents(row, column, value, image);
        if (value.typeId() == QMetaType::QString)
            return oneLine(value.toString());
    }
    return formatValue(value, c);
}

QIcon SimpleReport::cellIcon(qint64 row, int column)
{
    const ReportColumn& c = m_engine.Columns()[column];
    const int field = m_engine.Columns().indexOf(c.imageField);
    if (field < 0)
        return {};
    QVariant image = m_engine.cellValue(row, field);
    if (c.fetchMode && !image.isNull()) {
        QVariant value;
        m_engine.cellContents(row, column, value, image);
    }
    const int n = image.toInt();
    return n >= 1 && n <= m_icons.size() ? m_icons[n - 1] : QIcon();
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
    const QList<int> order = cols.displayOrder();
    for (int pos = 0; pos < order.size() && order[pos] < h->count(); ++pos)
        h->moveSection(h->visualIndex(order[pos]), pos);
    h->setSortIndicatorShown(false);
    for (int i = 0; i < cols.count(); ++i)
        if (cols[i].sortPicture != 0) {
            h->setSortIndicator(i, cols[i].sortPicture == -2 ? Qt::AscendingOrder
                                                             : Qt::DescendingOrder);
            h->setSortIndicatorShown(true);
        }
    m_applying = false;
}

void SimpleReport::syncColumnsFromHeader()
{
    if (m_applying)
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
    if (column >= 0 && column < m_model->columnCount())
        resizeColumnToContents(column);
    else
        resizeColumnsToContents();
    syncColumnsFromHeader();
}

// --- the engine's events -------------------------------------------------------------------

void SimpleReport::repaint()
{
    m_syncing = true;
    const bool reset = m_model->refresh();
    if (reset)
        applyColumns();
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
    if (watched == horizontalHeader()->viewport() && (press || release)) {
        const auto* me = static_cast<QMouseEvent*>(event);
        if (press) {
            pressedAt = me->position().toPoint();
        } else if ((me->position().toPoint() - pressedAt).manhattanLength() <
                   QApplication::startDragDistance()) {
            const int section = horizontalHeader()->logicalIndexAt(me->position().toPoint());
            if (section >= 0)
                headerReleased(section, me->button());
        }
    }
    return QTableView::eventFilter(watched, event);
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
        emit findDialog(colIndex);
    } else if (name == QLatin1String("mnuCopyAll") || name == QLatin1String("mnuCopySel")) {
        CopyToClipboard(name == QLatin1String("mnuCopySel"));
    } else if (name == QLatin1String("mnuAutoSize")) {
        m_engine.AutoSizeColumns(colIndex);
    } else if (name == QLatin1String("mnuHide")) {
        syncColumnsFromHeader();
        cols[colIndex].hidden = 1;
        applyColumns();
    } else if (name == QLatin1String("mnuFix")) {
        cols[colIndex].fixed = cols[colIndex].fixed == 2 ? 0 : 2;
    } else if (name == QLatin1String("mnuFirst") || name == QLatin1String("mnuLast")) {
        syncColumnsFromHeader();
        const int to = name == QLatin1String("mnuFirst") ? 0 : cols.count() - 1;
        horizontalHeader()->moveSection(horizontalHeader()->visualIndex(colIndex), to);
    } else if (name == QLatin1String("mnuConfig")) {
        emit editHeaders(colIndex);
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
        emit itemClick(i.row(), buttonCode(event->button()), shiftCode(event->modifiers()));
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

// --- clipboard -----------------------------------------------------------------------------

QString SimpleReport::ClipboardText(bool useSelection)
{
    QList<int> cols;
    for (int c : m_engine.Columns().displayOrder())
        if (m_engine.Columns()[c].hidden == 0)
            cols << c;
    QStringList line;
    for (int c : cols)
        line << oneLine(m_engine.Columns()[c].caption);
    QString out = line.join(QLatin1Char('\t')) + QStringLiteral("\r\n");

    QList<qint64> rows;
    if (useSelection) {
        for (const cListItem& item : SelectedItems())
            rows << item.Row;
    }
    const qint64 n = useSelection ? rows.size() : m_engine.ItemCount();
    m_copyStop = false;
    for (qint64 i = 0; i < n; ++i) {
        if (i > 0 && i % m_copyCheck == 0) {
            QCoreApplication::processEvents();
            if (m_copyStop) {
                m_copyStop = false;
                if (platform::dialogs().msgBox(
                        app::Translate(QStringLiteral("Kopiervorgang abbrechen?")),
                        platform::vbYesNo | platform::vbQuestion,
                        QStringLiteral("Vellumdock-Report")) == platform::vbYes)
                    return {};
            }
        }
        const qint64 row = useSelection ? rows[int(i)] : i;
        line.clear();
        for (int c : cols)
            line << oneLine(cellText(row, c));
        out += line.join(QLatin1Char('\t')) + QStringLiteral("\r\n");
    }
    return out;
}

void SimpleReport::CopyToClipboard(bool useSelection)
{
    const QString text = ClipboardText(useSelection);
    if (!text.isNull())
        QApplication::clipboard()->setText(text);
}

} // namespace vd::controls
