#pragma once
// The list control: a table view over the report engine. The engine keeps the recordset, one
// page of rows, the columns and the current row; this view shows them, hands clicks, keys and
// header changes back, and does what only a window can do: the header menu, the clipboard,
// row styles, cell tips, the frozen columns and the dialogs on the list.

#include "controls/ColumnEditor.h"
#include "controls/ReportEngine.h"

#include <functional>
#include <QAbstractTableModel>
#include <QColor>
#include <QHash>
#include <QIcon>
#include <QPixmap>
#include <QTableView>
#include <QVector>

class QMenu;
class QAction;
class QHelpEvent;

namespace vd::controls {

class SimpleReport;
class FrozenColumnView;

// A row handle as SelectedItems hands it out.
struct cListItem
{
    qint64 Row = -1;
    int Level = 0;
    QVariant ParentKey;
    QVariant Key;
    QString Caption;
    bool isEmpty() const { return Row < 0; }
};

// The style of one row, asked through fetchStyle when FetchRowStyle is on. What a host leaves
// as it is keeps the column's own look.
struct cStyle
{
    Qt::Alignment Alignment = {};         // horizontal
    Qt::Alignment VerticalAlignment = {}; // top, centre or bottom
    bool WordBreak = false;               // kept; cells show one line
    int FontStyle = 0;                    // 1 bold, 2 italic, 4 underline, 8 strike-out
    QColor TextColor;
    int BorderAppearance = 0; // kept for the hosts; the cells draw no borders of their own
    int BorderType = 0;
    QColor BackColor;
};

// The cells of the engine's page as Qt's item model.
class ReportModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    explicit ReportModel(SimpleReport* report);
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;
    // Resets when the shape changed, else repaints every cell.
    bool refresh();
    // The shape the view knows, which lags behind the engine while AutoRefresh is off.
    bool inStep() const;

private:
    SimpleReport* m_report;
    int m_rows = 0;
    int m_cols = 0;
};

class SimpleReport : public QTableView, public ReportEvents
{
    Q_OBJECT
public:
    explicit SimpleReport(QWidget* parent = nullptr);
    ~SimpleReport() override;

    ReportEngine& engine() { return m_engine; }
    ReportProperties& props() { return m_engine.props(); }

    void setDataBase(db::Database* database) { m_engine.setDataBase(database); }
    void setRecordSource(const QString& sql);
    // Everything at once, as the engine's Setup; the record source loads last.
    void Setup(const QString& recordSource, int invisCols, int invisColMode, const QString& layout,
               int imageColumn, bool translateIcons, int keyColumn, int filterColumn);
    void Requery();
    qint64 ItemCount() const { return m_engine.ItemCount(); }
    // Setting the filter value reloads when a record source and a filter column exist.
    void setFilterValue(const QVariant& value);
    QVariant FilterValue() const { return m_engine.props().FilterValue; }
    void setFilterColumn(int column) { m_engine.setFilterColumn(column); }

    // Off, the list neither repaints nor reshapes; switched on again it shows what changed
    // meanwhile, once.
    bool AutoRefresh() const { return m_engine.autoRefresh(); }
    void setAutoRefresh(bool on);

    // The layout string as the header shows it now.
    QString Layout();
    void setLayout(const QString& layout);
    // The columns as the header shows them now (widths, order, hidden).
    ReportColumns& Columns();
    // After the columns were changed from outside (the column editor): show them as they are.
    void columnsChanged();

    qint64 SelectedIndex() const { return m_engine.SelectedIndex(); }
    void setSelectedIndex(qint64 row);
    QList<cListItem> SelectedItems();
    bool ItemSelected(qint64 row) const;
    void setItemSelected(qint64 row, bool on);
    void ClearSelection();
    qint64 Find(const QVariant& column, const QString& value, qint64 start, int mode = 0)
    {
        return m_engine.Find(column, value, start, mode);
    }

    // Icons of the image column: icon number n is entry n - 1.
    void setIcons(const QVector<QIcon>& icons) { m_icons = icons; }

    // The text of the whole list (or the selected rows): header captions, then the rows, the
    // visible columns in display order, tab between fields, CR LF after each row. Null when
    // the user stopped it.
    QString ClipboardText(bool useSelection);
    void CopyToClipboard(bool useSelection);

    // The column editor "Spalten konfigurieren"; `tView` "GB" edits the GameBase column list
    // given by setGBColumnSource instead of the live columns.
    void EditHeaders(const QString& tView = {});
    void setGBColumnSource(const GBColumnSource& source) { m_gbSource = source; }
    // The find dialog on this list, modal or not; with `useSelection` the current row's value
    // of the column is the text to start with. `column` -1 starts on the first visible one.
    void FindDialog(bool modal, bool useSelection, int column = -1);

    // A picture of the current row for dragging; null when the row is not on screen.
    QPixmap CreateDragImage();

    // Shows the header's menu for one column and returns the chosen action; tests choose
    // without a popup.
    void setMenuRunner(std::function<QAction*(QMenu&)> runner) { m_menuRunner = std::move(runner); }
    // Every how many rows a long copy looks for Esc (and then offers to stop).
    void setCopyCheckInterval(int rows) { m_copyCheck = std::max(1, rows); }
    void requestCopyStop() { m_copyStop = true; }

    // The text a cell shows, formatted as its column says.
    QString cellText(qint64 row, int column);
    QIcon cellIcon(qint64 row, int column);
    // The row's style from the host, or nothing with FetchRowStyle off.
    const cStyle* rowStyle(int row);

    // Keeps a frozen cell's sideways position, and a cell out from under the frozen columns.
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

    // The view that shows the frozen columns over the left edge; hidden while none is fixed.
    FrozenColumnView* frozenView() const { return m_frozen; }

signals:
    // The designed events, in Qt's spelling.
    void selectionChange();
    void itemDblClick(qint64 row, int button, int keyState);
    void itemClick(qint64 row, int button, int keyState);
    void itemClickEx(qint64 row, int colIndex, int button, int keyState);
    void keydown(int keyCode, int shift);
    void columnClick(int colIndex, int button, int keyState);
    void translateIcon(QVariant& icon);
    void fetchContents(qint64 row, int colIndex, QVariant& text, QVariant& icon);
    void fetchColumn(int& colIndex);
    void fetchStyle(qint64 row, vd::controls::cStyle& style);
    void cellTip(qint64 row, int colIndex, QString& text);
    void dragItem();

protected:
    // The engine's events.
    void SelectionChange() override;
    void ColumnClick(int colIndex, int button, int keyState) override;
    void FetchColumn(int& colIndex) override { emit fetchColumn(colIndex); }
    void TranslateIcon(QVariant& icon) override { emit translateIcon(icon); }
    void FetchContents(qint64 row, int colIndex, QVariant& text, QVariant& icon) override
    {
        emit fetchContents(row, colIndex, text, icon);
    }
    void autoSizeColumns(int column, int mode) override;
    void repaint() override;
    void openHeaderMenu(int colIndex) override;

    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void updateGeometries() override;
    void startDrag(Qt::DropActions supportedActions) override;

private:
    void applyColumns();
    void setMultiSelect();
    void syncColumnsFromHeader();
    void syncCurrentRow();
    void headerReleased(int section, Qt::MouseButton button);
    void fillHeaderMenu(QMenu& menu, int col);
    void toggleFixed(int col);
    bool fixedColumnsFirst() const;
    void cellPressed(const QModelIndex& index, Qt::MouseButton button, Qt::KeyboardModifiers mods);
    bool showCellTip(QHelpEvent* event, QAbstractItemView* view);
    QString formatValue(const QVariant& v, const ReportColumn& c) const;

    ReportEngine m_engine;
    ReportModel* m_model;
    FrozenColumnView* m_frozen;
    QVector<QIcon> m_icons;
    std::function<QAction*(QMenu&)> m_menuRunner;
    GBColumnSource m_gbSource;
    QHash<int, cStyle> m_styles; // rows asked since the last refresh
    bool m_applying = false;
    bool m_syncing = false;
    bool m_dirty = false;           // a refresh waits for AutoRefresh
    bool m_autoSizePending = false; // asked while the view's shape lagged behind
    int m_autoSizeColumn = -1;
    int m_copyCheck = 1000;
    bool m_copyStop = false;
};

} // namespace vd::controls
