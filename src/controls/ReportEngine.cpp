#include "controls/ReportEngine.h"

#include "catalogue/Database.h"
#include "catalogue/JetFunctions.h"
#include "catalogue/QueryDef.h"
#include "catalogue/RowOps.h"
#include "controls/ControlErrors.h"
#include "controls/SqlTree.h"

#include <cmath>
#include <QLocale>
#include <QTimer>

namespace vd::controls {

// --- properties ----------------------------------------------------------------------------

namespace {

// Every stored property with its key, for reading and writing alike.
template <typename P, typename Visit> void forEachProperty(P& p, Visit&& v)
{
    v("Enabled", p.Enabled);
    v("BorderStyle", p.BorderStyle);
    v("GridLines", p.GridLines);
    v("MaxColWidth", p.MaxColWidth);
    v("CurrencyFormat", p.CurrencyFormat);
    v("CurrencyFaktor", p.CurrencyFactor);
    v("FilterColumn", p.FilterColumn);
    v("FilterValue", p.FilterValue);
    v("ImageColumn", p.ImageColumn);
    v("TranslateIcons", p.TranslateIcons);
    v("InvisibleCols", p.InvisibleCols);
    v("InvisibleColMode", p.InvisibleColMode);
    v("KeyColumn", p.KeyColumn);
    v("AutoSizeMode", p.AutoSizeMode);
    v("LockUpdate", p.LockUpdate);
    v("DblClickOnReturn", p.DblClickOnReturn);
    v("SearchMode", p.SearchMode);
    v("MultiSelect", p.MultiSelect);
    v("SortMode", p.SortMode);
    v("OptimizeLoad", p.OptimizeLoad);
    v("RecordSource", p.RecordSource);
    v("RecordsetType", p.RecordsetType);
    v("ShowCellTips", p.ShowCellTips);
    v("FetchToolTips", p.FetchToolTips);
    v("ShowContextMenu", p.ShowContextMenu);
    v("EmptyRows", p.EmptyRows);
    v("FetchRowStyle", p.FetchRowStyle);
    v("ShowThousands", p.ShowThousands);
    v("HoverSelect", p.HoverSelect);
    v("CaseSensitive", p.CaseSensitive);
    v("RowHeight", p.RowHeight);
    v("SnapMode", p.SnapMode);
    v("EnableHotKeys", p.EnableHotKeys);
    v("ScrollbarStyle", p.ScrollbarStyle);
}

// Rounds halves to the even neighbour, as the paging has always rounded.
qint64 vbRound(double x)
{
    return qint64(std::nearbyint(x));
}

QString formatCurrency(double value, const QString& format)
{
    if (format.compare(QLatin1String("Currency"), Qt::CaseInsensitive) == 0)
        return QLocale().toCurrencyString(value);
    return db::vbFormat(value, format);
}

} // namespace

ReportProperties ReportProperties::newControl()
{
    ReportProperties p;
    p.DblClickOnReturn = true;
    p.InvisibleColMode = 1;
    p.AutoSizeMode = 1;
    p.RecordsetType = 1;
    p.ShowContextMenu = true;
    p.EnableHotKeys = true;
    p.ScrollbarStyle = 3;
    return p;
}

ReportProperties ReportProperties::read(const QVariantMap& bag)
{
    ReportProperties p;
    forEachProperty(p, [&](const char* key, auto& field) {
        const auto it = bag.constFind(QLatin1String(key));
        if (it == bag.constEnd())
            return;
        using T = std::decay_t<decltype(field)>;
        if constexpr (std::is_same_v<T, QVariant>)
            field = it.value();
        else if (it.value().canConvert<T>())
            field = it.value().value<T>();
    });
    if (p.CurrencyFactor <= 0)
        p.CurrencyFactor = 1.0;
    return p;
}

QVariantMap ReportProperties::write() const
{
    QVariantMap bag;
    forEachProperty(*this, [&](const char* key, const auto& field) {
        bag.insert(QLatin1String(key), QVariant(field));
    });
    return bag;
}

// --- record source and loading -------------------------------------------------------------

ReportEngine::ReportEngine(ReportEvents* events) : m_events(events) {}

ReportEngine::~ReportEngine() = default;

void ReportEngine::Setup(const QString& recordSource, int invisCols, int invisColMode,
                         const QString& layout, int imageColumn, bool translateIcons, int keyColumn,
                         int filterColumn)
{
    listGuard("Setup", [&] {
        if (invisCols != -1)
            m_p.InvisibleCols = invisCols;
        m_p.InvisibleColMode = invisColMode;
        m_layout = layout;
        if (imageColumn != -2)
            m_p.ImageColumn = imageColumn;
        m_p.TranslateIcons = translateIcons;
        m_p.KeyColumn = keyColumn;
        setFilterColumn(filterColumn);
        setRecordSource(recordSource);
    });
}

void ReportEngine::setDataBase(db::Database* database)
{
    if (!database)
        return;
    m_rs.reset();
    m_query.reset();
    m_db = database;
    if (!m_p.RecordSource.isEmpty())
        setRecordSource(m_p.RecordSource);
}

void ReportEngine::setRecordSource(const QString& sql)
{
    m_p.RecordSource = sql;
    resetPage();
    m_current = -1;
    clearSavedSelection();
    if (sql.isEmpty())
        clearList();
    else
        Load();
}

void ReportEngine::clearList()
{
    m_rowCount = 0;
    m_columns.clear();
    m_rs.reset();
    m_query.reset();
    if (m_autoRefresh)
        events().repaint();
}

void ReportEngine::setFilterColumn(int column)
{
    m_p.FilterColumn = column;
    m_p.FilterValue = QVariant();
}

void ReportEngine::setFilterValue(const QVariant& value)
{
    m_p.FilterValue = value;
    if (m_p.RecordSource.isEmpty() || m_p.FilterColumn == -1)
        return;
    if (m_rs)
        UpdateView(true, false);
    else
        Load();
}

void ReportEngine::setCurrencyFactor(double factor)
{
    if (factor > 0)
        m_p.CurrencyFactor = factor;
}

int ReportEngine::firstVisibleColumn() const
{
    return m_p.InvisibleCols > 0 && m_p.InvisibleColMode == 1 ? m_p.InvisibleCols : 0;
}

void ReportEngine::Load()
{
    m_ascending = true;
    if (m_p.SortMode == 1 || m_p.SortMode == 2) {
        m_sortCol = -1;
    } else {
        m_sortCol = firstVisibleColumn();
        events().FetchColumn(m_sortCol);
    }
    if (DataSetup() == -1)
        return;
    ColumnSetup();
}

bool ReportEngine::ShouldLoad() const
{
    return !m_p.OptimizeLoad || m_forced || m_shown;
}

void ReportEngine::forceLoad()
{
    m_forced = true;
    if (!m_rs && !m_p.RecordSource.isEmpty())
        Load();
    m_forced = false;
}

qint64 ReportEngine::DataSetup()
{
    if (!m_db || m_p.RecordSource.isEmpty())
        return -1;
    if (!ShouldLoad()) {
        m_rs.reset();
        return -1;
    }
    return listGuard("DataSetup", qint64(-1), [&] {
        const bool filter =
            m_p.FilterColumn != -1 && !catalogue::ValueText(m_p.FilterValue).isEmpty();
        const int sort = m_p.SortMode != 1 ? m_sortCol : -1;
        m_statement =
            MakeReportSQL(m_p.RecordSource, filter ? m_p.FilterColumn : -1, sort, m_ascending);
        // The query is kept, so that a new filter value runs a prepared statement again.
        if (!m_query)
            m_query = m_db->createQueryDef(m_statement);
        else if (m_query->sql() != m_statement)
            m_query->setSql(m_statement);
        if (filter)
            m_query->setParameter(QStringLiteral("XXX"), m_p.FilterValue);
        // The old recordset goes when the new one is open: a failure leaves the list as it was.
        m_rs = m_p.RecordsetType == 1
                   ? m_query->openRecordset(db::RecordsetType::Dynaset,
                                            db::option::SeeChanges | db::option::ReadOnly)
                   : m_query->openRecordset(db::RecordsetType::Snapshot, db::option::SeeChanges);
        if (m_rs->recordCount() > 0)
            m_rs->moveLast();
        return m_rs->recordCount();
    });
}

void ReportEngine::UpdateView(bool rebuild, bool keepPosition)
{
    listGuard("UpdateView", [&] {
        if (m_rs)
            rememberSelection();
        if (rebuild) {
            DataSetup();
        } else if (m_rs) {
            m_rs->requery();
            if (m_rs->recordCount() > 0)
                m_rs->moveLast();
        }
        resetPage();
        m_rowCount = m_rs ? m_rs->recordCount() : 0;
        if (m_current >= m_rowCount)
            m_current = m_rowCount - 1;
        restoreSelection(keepPosition);
        events().repaint();
    });
}

// --- columns -------------------------------------------------------------------------------

void ReportEngine::setupColumn(int index, int firstVisible)
{
    const db::FieldInfo& f = m_rs->field(index);
    ReportColumn& c = m_columns.add(f.name, 64);
    ColumnAlign align = ColumnAlign::Left;
    QString format;
    if (!(index == firstVisible && m_p.ImageColumn != -1)) {
        switch (f.type) {
        case db::type::Numeric:
        case db::type::Decimal:
        case db::type::Double:
        case db::type::Float:
        case db::type::Single:
            align = ColumnAlign::Right;
            if (m_p.ShowThousands)
                format = QStringLiteral("#,0.0#################");
            break;
        case db::type::Integer:
        case db::type::Long:
        case db::type::BigInt:
        case db::type::Byte:
            align = ColumnAlign::Right;
            if (m_p.ShowThousands)
                format = QStringLiteral("#,0");
            break;
        case db::type::Boolean:
            align = ColumnAlign::Right;
            format = QStringLiteral("Yes/No");
            break;
        case db::type::Currency:
            align = ColumnAlign::Right;
            if (m_p.CurrencyFactor == 1.0)
                format = m_p.CurrencyFormat;
            else
                c.fetchMode = true;
            break;
        case db::type::Date:
        case 22: // Time
            align = ColumnAlign::Center;
            break;
        case db::type::Text:
        case db::type::Memo:
            format = QStringLiteral("RPL");
            break;
        default:
            break;
        }
    }
    c.alignment = c.headerAlignment = align;
    c.format = format;
    c.minWidth = 26;
    c.caption = f.name;
}

void ReportEngine::ColumnSetup()
{
    if (!m_db || !m_rs || m_p.LockUpdate)
        return;
    listGuard("ColumnSetup", [&] {
        const bool refresh = m_autoRefresh;
        m_autoRefresh = false;
        m_columns.clear();
        const int n = m_rs->fieldCount();
        const int invisible = std::clamp(m_p.InvisibleCols, 0, n);
        const int hiddenFrom = m_p.InvisibleColMode == 0 ? n - invisible : 0;
        const int hiddenTo = m_p.InvisibleColMode == 0 ? n - 1 : invisible - 1;
        const int firstVisible = firstVisibleColumn();
        if (m_p.SortMode != 0)
            m_sortCol = -1;
        for (int i = 0; i < n; ++i) {
            setupColumn(i, firstVisible);
            if (invisible > 0 && i >= hiddenFrom && i <= hiddenTo) {
                m_columns[i].hidden = 2;
                m_columns[i].invisible = true;
            }
        }
        if (firstVisible < n) {
            ReportColumn& first = m_columns[firstVisible];
            first.noHide = true;
            if (m_p.ImageColumn >= 0 && m_p.ImageColumn < n) {
                first.imageField = m_rs->field(m_p.ImageColumn).name;
                if (m_p.TranslateIcons)
                    first.fetchMode = true;
            }
        }
        if (m_sortCol >= 0 && m_sortCol < n)
            m_columns[m_sortCol].sortPicture = -2;
        m_rowCount = m_rs->recordCount();
        applyStoredLayout();
        m_autoRefresh = refresh;
    });
}

void ReportEngine::applyStoredLayout()
{
    if (m_layout.isEmpty()) {
        events().autoSizeColumns(-1, m_p.AutoSizeMode == 1 ? 1 : 0);
        return;
    }
    if (!m_layout.contains(QLatin1Char('!')))
        m_columns.applyOldLayout(m_layout, m_p.InvisibleCols, m_p.InvisibleColMode);
    else
        m_columns.applyLayout(m_layout);
    // What is stored is what the columns now are.
    m_layout = m_columns.layout();
}

void ReportEngine::setLayout(const QString& layout)
{
    m_layout = layout;
    if (m_columns.count() > 0 && !layout.isEmpty())
        applyStoredLayout();
}

void ReportEngine::AutoSizeColumns(const QVariant& column)
{
    int index = -1;
    if (column.typeId() == QMetaType::QString)
        index = m_columns.indexOf(column.toString());
    else if (column.isValid())
        index = column.toInt();
    events().autoSizeColumns(index, m_p.AutoSizeMode == 1 ? 1 : 0);
}

// --- sorting -------------------------------------------------------------------------------

void ReportEngine::Resort(int colIndex, bool ascending)
{
    if (m_rowCount < 1 || colIndex < 0 || colIndex >= m_columns.count())
        return;
    if (m_sortCol >= 0 && m_sortCol < m_columns.count())
        m_columns[m_sortCol].sortPicture = 0;
    m_sortCol = colIndex;
    m_ascending = ascending;
    m_columns[colIndex].sortPicture = ascending ? -2 : -1;
    // A new order moves the current row's position only: that is no change of selection.
    m_swallowSelectionChange = true;
    UpdateView(true, false);
    m_swallowSelectionChange = false;
}

void ReportEngine::SortInfo(int& colIndex, bool& ascending) const
{
    colIndex = m_sortCol;
    ascending = m_ascending;
}

ReportEngine::HeaderAction ReportEngine::columnClicked(int colIndex, int button, int keyState)
{
    if (button == LeftButton && (m_p.SortMode == 0 || m_p.SortMode == 2) && m_rowCount >= 1) {
        Resort(colIndex, colIndex == m_sortCol ? !m_ascending : true);
        return HeaderAction::Sorted;
    }
    if (button != LeftButton && m_p.ShowContextMenu) {
        events().openHeaderMenu(colIndex);
        return HeaderAction::ContextMenu;
    }
    events().ColumnClick(colIndex, button, keyState);
    return HeaderAction::ColumnClick;
}

// --- paging and cells ----------------------------------------------------------------------

qint64 ReportEngine::fetchRows(qint64 first, qint64 last)
{
    if (!m_rs || m_rs->recordCount() == 0)
        return -1;
    if (m_pageFirst >= 0 && first >= m_pageFirst && last <= m_pageLast)
        return m_pageFirst;
    return listGuard("FetchRows", qint64(-1), [&] {
        const qint64 count = m_rs->recordCount();
        const qint64 lastRow = count - 1;
        // A page is two screens around the middle of what the widget wants.
        const qint64 rows = vbRound(2.0 * m_viewHeight / std::max(1, m_p.RowHeight));
        const qint64 mid = first + vbRound(double(last - first + 1) / 2);
        const qint64 half = vbRound(double(rows - 1) / 2);
        qint64 start = mid - half;
        qint64 end = mid + half;
        if (start < 0)
            end += -start;
        else if (end > lastRow)
            start -= end - count;
        start = std::max<qint64>(start, 0);
        end = std::min(end, lastRow);
        m_rs->setAbsolutePosition(start);
        m_page = m_rs->getRows(end - start + 1);
        m_pageFirst = start;
        m_pageLast = start + m_page.rowCount - 1;
        if (m_page.rowCount < end - start + 1)
            Requery(); // the recordset has changed under the list
        return start;
    });
}

QVariant ReportEngine::cellValue(qint64 row, int column)
{
    if (row < m_pageFirst || row > m_pageLast || m_pageFirst < 0)
        fetchRows(row, row);
    if (m_pageFirst < 0 || row < m_pageFirst || row > m_pageLast || column < 0 ||
        column >= m_page.fieldCount)
        return {};
    return m_page.value(column, int(row - m_pageFirst));
}

void ReportEngine::cellContents(qint64 row, int colIndex, QVariant& value, QVariant& image)
{
    if (!image.isNull() && m_p.TranslateIcons) {
        events().TranslateIcon(image);
        return;
    }
    if (!value.isNull() && m_rs && colIndex >= 0 && colIndex < m_rs->fieldCount() &&
        m_rs->field(colIndex).type == db::type::Currency) {
        value = formatCurrency(value.toDouble() / m_p.CurrencyFactor, m_p.CurrencyFormat);
        return;
    }
    events().FetchContents(row, colIndex, value, image);
}

int ReportEngine::fieldOf(const QVariant& field) const
{
    if (!m_rs)
        return -1;
    if (field.typeId() == QMetaType::QString)
        return m_rs->fieldIndex(field.toString());
    const int i = field.toInt();
    return i >= 0 && i < m_rs->fieldCount() ? i : -1;
}

QVariant ReportEngine::FieldValue(const QVariant& field, qint64 row)
{
    try {
        if (row == -1)
            row = m_current;
        const int f = fieldOf(field);
        if (row < 0 || row >= m_rowCount || f < 0)
            return {};
        if (m_pageFirst >= 0 && row >= m_pageFirst && row <= m_pageLast)
            return m_page.value(f, int(row - m_pageFirst));
        m_rs->setAbsolutePosition(row);
        return m_rs->value(f);
    } catch (const std::exception&) {
        return {};
    }
}

void ReportEngine::setSelectedIndex(qint64 row)
{
    if (row < -1 || row >= m_rowCount || row == m_current)
        return;
    m_current = row;
    if (m_swallowSelectionChange) {
        m_swallowSelectionChange = false;
        return;
    }
    events().SelectionChange();
}

bool ReportEngine::searchPending() const
{
    return m_timer && m_timer->isActive();
}

} // namespace vd::controls
