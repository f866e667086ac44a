#pragma once
// The list control: a table view over the report engine. The engine keeps the recordset, one
// page of rows, the columns and the current row; this view shows them, hands clicks, keys and
// header changes back, and does what only a window can do: the header menu, the clipboard.

#include "controls/ReportEngine.h"

#include <functional>
#include <QAbstractTableModel>
#include <QIcon>
#include <QTableView>
#include <QVector>

class QMenu;
class QAction;

namespace vd::controls {

class SimpleReport;

// A row handle as SelectedItems hands it out.
struct cListItem
{
    qint64 Row = -1;
    int Level = 0;
    QVariant ParentKey;
    QVariant Key;
    bool isEmpty() const { return Row < 0; }
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

    // The layout string as the header shows it now.
    QString Layout();
    void setLayout(const QString& layout);

    qint64 SelectedIndex() const { return m_engine.SelectedIndex(); }
    void setSelectedIndex(qint64 row);
    QList<cListItem> SelectedItems();
    bool ItemSelected(qint64 row) const;
    void setItemSelected(qint64 row, bool on);
    void ClearSelection();

    // Icons of the image column: icon number n is entry n - 1.
    void setIcons(const QVector<QIcon>& icons) { m_icons = icons; }

    // The text of the whole list (or the selected rows): header captions, then the rows, the
    // visible columns in display order, tab between fields, CR LF after each row. Null when
    // the user stopped it.
    QString ClipboardText(bool useSelection);
    void CopyToClipboard(bool useSelection);

    // Shows the header's menu for one column and returns the chosen action; tests choose
    // without a popup.
    void setMenuRunner(std::function<QAction*(QMenu&)> runner) { m_menuRunner = std::move(runner); }
    // Every how many rows a long copy looks for Esc (and then offers to stop).
    void setCopyCheckInterval(int rows) { m_copyCheck = std::max(1, rows); }
    void requestCopyStop() { m_copyStop = true; }

    // The text a cell shows, formatted as its column says.
    QString cellText(qint64 row, int column);
    QIcon cellIcon(qint64 row, int column);

signals:
    // The designed events, in Qt's spelling.
    void selectionChange();
    void itemDblClick(qint64 row, int button, int keyState);
    void itemClick(qint64 row, int button, int keyState);
    void keydown(int keyCode, int shift);
    void columnClick(int colIndex, int button, int keyState);
    void translateIcon(QVariant& icon);
    void fetchContents(qint64 row, int colIndex, QVariant& text, QVariant& icon);
    void editHeaders(int colIndex);
    void findDialog(int colIndex);

protected:
    // The engine's events.
    void SelectionChange() override;
    void ColumnClick(int colIndex, int button, int keyState) override;
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
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void applyColumns();
    void setMultiSelect();
    void syncColumnsFromHeader();
    void syncCurrentRow();
    void headerReleased(int section, Qt::MouseButton button);
    void fillHeaderMenu(QMenu& menu, int col);
    QString formatValue(const QVariant& v, const ReportColumn& c) const;

    ReportEngine m_engine;
    ReportModel* m_model;
    QVector<QIcon> m_icons;
    std::function<QAction*(QMenu&)> m_menuRunner;
    bool m_applying = false;
    bool m_syncing = false;
    int m_copyCheck = 1000;
    bool m_copyStop = false;
};

} // namespace vd::controls
