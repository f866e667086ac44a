#pragma once
// The data side of the list control: one recordset over the record source, a page of two
// screens as the only copy of rows, the column decisions by field type, the layout string,
// sorting through SQL, the selection kept across reloads, Find and the incremental search.
// The list widget is a thin view over this engine: it reports its height, asks for pages and
// cells, and shows the columns and the current row kept here.

#include "catalogue/Recordset.h"
#include "controls/ReportColumns.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <QString>
#include <QVariant>
#include <QVariantMap>

class QTimer;

namespace vd::db {
class Database;
class QueryDef;
} // namespace vd::db

namespace vd::controls {

// The stored properties, with the defaults of a control whose key is missing.
struct ReportProperties
{
    bool Enabled = true;
    int BorderStyle = 1;
    bool GridLines = false;
    int MaxColWidth = 300;
    QString CurrencyFormat = QStringLiteral("Currency");
    double CurrencyFactor = 1.0;
    int FilterColumn = -1;
    QVariant FilterValue;
    int ImageColumn = -1;
    bool TranslateIcons = false;
    int InvisibleCols = 0;
    int InvisibleColMode = 0;
    int KeyColumn = -1;
    int AutoSizeMode = 0;
    bool LockUpdate = false;
    bool DblClickOnReturn = false;
    int SearchMode = 0;
    bool MultiSelect = false;
    int SortMode = 0;
    bool OptimizeLoad = false;
    QString RecordSource;
    int RecordsetType = 0;
    bool ShowCellTips = false;
    bool FetchToolTips = false;
    bool ShowContextMenu = false;
    bool EmptyRows = true;
    bool FetchRowStyle = false;
    bool ShowThousands = false;
    bool HoverSelect = false;
    bool CaseSensitive = false;
    int RowHeight = 16;
    bool SnapMode = true;
    bool EnableHotKeys = true;
    int ScrollbarStyle = 3;

    // The values a control newly placed on a form starts with.
    static ReportProperties newControl();
    // Reads the stored keys ("CurrencyFaktor", "SnapMode", ...); a missing key gives the default.
    static ReportProperties read(const QVariantMap& bag);
    QVariantMap write() const;
};

// What the engine tells its host, and what it asks of the list widget.
class ReportEvents
{
public:
    virtual ~ReportEvents() = default;
    virtual void SelectionChange() {}
    virtual void FetchColumn(int& colIndex) { (void)colIndex; }
    virtual void ColumnClick(int colIndex, int button, int keyState)
    {
        (void)colIndex, (void)button, (void)keyState;
    }
    virtual void TranslateIcon(QVariant& icon) { (void)icon; }
    virtual void FetchContents(qint64 row, int colIndex, QVariant& text, QVariant& icon)
    {
        (void)row, (void)colIndex, (void)text, (void)icon;
    }
    // The widget's side.
    virtual void autoSizeColumns(int column, int mode) { (void)column, (void)mode; }
    virtual void repaint() {}
    virtual void openHeaderMenu(int colIndex) { (void)colIndex; }
};

class ReportEngine
{
public:
    enum MouseButton
    {
        LeftButton = 1,
        RightButton = 2,
        MiddleButton = 4
    };
    enum class HeaderAction
    {
        Sorted,
        ContextMenu,
        ColumnClick
    };
    enum FindMode
    {
        FindAndSelect = 0,
        DryRun = 1
    };

    explicit ReportEngine(ReportEvents* events = nullptr);
    ~ReportEngine();
    ReportEngine(const ReportEngine&) = delete;
    ReportEngine& operator=(const ReportEngine&) = delete;

    ReportProperties& props() { return m_p; }
    const ReportProperties& props() const { return m_p; }
    void setEvents(ReportEvents* events) { m_events = events; }

    // Everything at once; `invisCols` -1 and `imageColumn` -2 keep the present value. The
    // record source goes last and loads.
    void Setup(const QString& recordSource, int invisCols, int invisColMode, const QString& layout,
               int imageColumn, bool translateIcons, int keyColumn, int filterColumn);
    db::Database* DataBase() const { return m_db; }
    void setDataBase(db::Database* database); // nothing is ignored
    QString RecordSource() const { return m_p.RecordSource; }
    void setRecordSource(const QString& sql);
    db::Recordset* RecordSet() const { return m_rs.get(); }
    void setRecordSet(const db::Recordset& rs) { setRecordSource(rs.name()); }
    void setFilterColumn(int column);           // resets FilterValue to Null
    void setFilterValue(const QVariant& value); // reloads with a record source and filter column
    void setCurrencyFactor(double factor);      // values at or below 0 are ignored
    bool autoRefresh() const { return m_autoRefresh; }
    void setAutoRefresh(bool on) { m_autoRefresh = on; }

    // Loading.
    void Load();
    bool ShouldLoad() const;
    void setShown(bool shown) { m_shown = shown; } // the widget: parent visible, rectangles meet
    void forceLoad();
    qint64 DataSetup(); // the row count, or -1
    void ColumnSetup();
    void UpdateView(bool rebuild, bool keepPosition);
    void Requery() { UpdateView(false, true); }
    qint64 ItemCount() const { return m_rowCount; }
    QString lastStatement() const { return m_statement; }

    // Columns and layout.
    ReportColumns& Columns() { return m_columns; }
    const ReportColumns& Columns() const { return m_columns; }
    QString Layout() const { return m_layout; }
    void setLayout(const QString& layout);
    void AutoSizeColumns(const QVariant& column);
    int firstVisibleColumn() const;

    // Sorting.
    void Resort(int colIndex, bool ascending);
    void SortInfo(int& colIndex, bool& ascending) const;
    int SortColumn() const { return m_sortCol; }
    HeaderAction columnClicked(int colIndex, int button, int keyState = 0);

    // Paging: the widget needs rows first to last. Returns the first row of the page in
    // memory (unchanged when it already holds them), -1 with no rows.
    void setViewHeight(int pixels) { m_viewHeight = std::max(0, pixels); }
    qint64 fetchRows(qint64 first, qint64 last);
    qint64 pageFirst() const { return m_pageFirst; }
    qint64 pageLast() const { return m_pageLast; }
    QVariant cellValue(qint64 row, int column);
    void cellContents(qint64 row, int colIndex, QVariant& value, QVariant& image);
    QVariant FieldValue(const QVariant& field, qint64 row = -1);

    // The current row, as the widget shows it.
    qint64 SelectedIndex() const { return m_current; }
    void setSelectedIndex(qint64 row);
    void rememberSelection();
    void restoreSelection(bool allowFallback);

    // Find, and the search as the user types.
    qint64 Find(const QVariant& column, const QString& value, qint64 start,
                int mode = FindAndSelect);
    bool typeAhead(QChar c, bool shift = false, bool ctrl = false);
    void searchTimeout();
    bool searchPending() const;
    QString searchText() const { return m_searchText; }
    void setClock(std::function<qint64()> clock) { m_clock = std::move(clock); }
    QString searchCriteria(const QString& text) const; // "" when the column cannot be searched

private:
    void clearList();
    void resetPage() { m_pageFirst = m_pageLast = -1, m_page = {}; }
    int fieldOf(const QVariant& field) const;
    void setupColumn(int index, int firstVisible);
    void applyStoredLayout();
    qint64 searchFrom(const QString& criteria, qint64 start, bool dryRun);
    void clearSavedSelection();

    ReportEvents* m_events = nullptr;
    ReportEvents m_noEvents;
    ReportProperties m_p;
    db::Database* m_db = nullptr;
    std::unique_ptr<db::QueryDef> m_query;
    std::unique_ptr<db::Recordset> m_rs;
    QString m_statement;
    QString m_layout;
    ReportColumns m_columns;
    int m_sortCol = -1;
    bool m_ascending = true;
    qint64 m_rowCount = 0;
    qint64 m_current = -1;
    bool m_swallowSelectionChange = false;
    bool m_autoRefresh = true;
    bool m_shown = true;
    bool m_forced = false;
    int m_viewHeight = 240;
    qint64 m_pageFirst = -1;
    qint64 m_pageLast = -1;
    db::RowBlock m_page;

    std::optional<QString> m_savedKey;
    std::optional<db::RowBlock> m_savedRow;
    qint64 m_savedRowNumber = -1;

    QString m_searchText;
    qint64 m_lastKey = 0;
    std::unique_ptr<QTimer> m_timer;
    std::function<qint64()> m_clock;

    ReportEvents& events() { return m_events ? *m_events : m_noEvents; }
};

} // namespace vd::controls
