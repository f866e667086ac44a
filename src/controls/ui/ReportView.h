#pragma once
// The drill-down list: one SimpleReport and the level statements of cListLevels. One level is
// on screen; going down takes the key of the current row (column 0) as the filter value of the
// next level, and each level keeps its own filter value and column layout for the way back.

#include "controls/ListLevels.h"
#include "controls/ui/SimpleReport.h"

#include <memory>
#include <QStringList>
#include <QVariantMap>
#include <QWidget>

namespace vd::controls {

class CTreeItem;

class ReportView : public QWidget
{
    Q_OBJECT
public:
    explicit ReportView(QWidget* parent = nullptr);
    ~ReportView() override;

    SimpleReport& report() { return *m_list; }
    cListLevels& levels() { return *m_levels; }

    db::Database* DataBase() const { return m_list->engine().DataBase(); }
    void setDataBase(db::Database* database);

    int CurLevel() const { return m_curLevel; }
    // Shows `level` filtered by `filterValue`; the same level (or one past the last) only
    // takes a changed filter value.
    void ChangeLevel(int level, const QString& filterValue);
    void NextLevel();
    void PrevLevel();
    // Shows the list that belongs to a tree node (the node's children, or level 1 at the root).
    void Synchronize(const std::shared_ptr<CTreeItem>& item);
    // The filter value stored for a level ("" outside 1 to the level count).
    QString levelFilterValue(int level) const;

    // The layouts of all levels joined by "@".
    QString Layout();
    void setLayout(const QString& layout);

    int DblClickMode() const { return m_dblClickMode; }
    void setDblClickMode(int mode) { m_dblClickMode = mode; }
    bool StoreUserColWidth() const { return m_storeUserColWidth; }
    void setStoreUserColWidth(bool on) { m_storeUserColWidth = on; }
    int MaxColWidth() const { return m_list->props().MaxColWidth; }
    void setMaxColWidth(int width) { m_list->props().MaxColWidth = width; }
    bool AutoRefresh() const { return m_list->AutoRefresh(); }
    void setAutoRefresh(bool on) { m_list->setAutoRefresh(on); }

    // The current row's key: the KeyColumn field as text.
    QString SelectedItemKey();
    cListItem SelectedItem();
    QList<cListItem> SelectedItems();
    qint64 SelectedIndex() const { return m_list->SelectedIndex(); }
    void setSelectedIndex(qint64 row) { m_list->setSelectedIndex(row); }
    QVariant FieldValue(const QVariant& field, qint64 row = -1)
    {
        return m_list->engine().FieldValue(field, row);
    }
    qint64 ItemCount() const { return m_list->ItemCount(); }
    db::Recordset* RecordSet() { return m_list->engine().RecordSet(); }
    ReportColumns& Columns() { return m_list->Columns(); }
    void Requery() { m_list->Requery(); }
    void AutoSizeColumns(const QVariant& column) { m_list->engine().AutoSizeColumns(column); }
    qint64 Find(const QVariant& column, const QString& value, qint64 start, int mode = 0)
    {
        return m_list->Find(column, value, start, mode);
    }
    void FindDialog(bool modal, bool useSelection) { m_list->FindDialog(modal, useSelection); }
    void EditHeaders(const QString& tView = {}) { m_list->EditHeaders(tView); }
    void CopyToClipboard(bool useSelection) { m_list->CopyToClipboard(useSelection); }
    void SortInfo(int& colIndex, bool& ascending) const
    {
        m_list->engine().SortInfo(colIndex, ascending);
    }
    int SortColumn() const { return m_list->engine().SortColumn(); }
    void Resort(int colIndex, bool ascending);
    void setIcons(const QVector<QIcon>& icons) { m_list->setIcons(icons); }

    // The stored properties: those of the list it holds, plus "DblClickMode" and
    // "StoreUserColWidth".
    void readProperties(const QVariantMap& bag);
    QVariantMap writeProperties() const;

signals:
    void translateIcon(QVariant& icon);
    void itemClick(qint64 row, int button, int keyState);
    void selectionChange();
    void columnClick(int colIndex, int button, int keyState);
    void itemDblClick(qint64 row, int button, int keyState);
    void translateLanguage(QString& text);
    void fetchColumnLayout(QString& layout);
    void keydown(int keyCode, int shift);
    void fetchColumn(int& colIndex);
    void fetchStyle(qint64 row, vd::controls::cStyle& style);
    void activeLevelChange(int level);
    void fetchContents(qint64 row, int colIndex, QVariant& text, QVariant& icon);

private:
    void levelsChanged();
    void doubleClicked(qint64 row, int button, int keyState);

    SimpleReport* m_list;
    cListLevels* m_levels;
    int m_curLevel = 0;
    QStringList m_filterValues; // level n is entry n - 1
    QStringList m_layouts;
    int m_dblClickMode = 0;
    bool m_storeUserColWidth = true;
};

} // namespace vd::controls
