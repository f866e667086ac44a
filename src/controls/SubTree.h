#pragma once
// The tree engine: the whole visible tree is one flat list of rows (the absolute index), while
// each opened set of sibling rows keeps its own rows (the local index) as an open recordset.
// Only the root and the rows the user expanded have a CSubTree; a row costs one flag byte.

#include <memory>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <vector>

namespace vd::db {
class Recordset;
}

namespace vd::controls {

class CTreeLevels;
class CTreeItem;
class CSubTree;

// The bits of a row.
namespace itemflag {
constexpr quint8 RootItem = 1;    // the very first row of the tree
constexpr quint8 LastItem = 2;    // last row of its subtree
constexpr quint8 Expanded = 8;    // a child subtree exists
constexpr quint8 Selected = 16;   // the selected row
constexpr quint8 Expandable = 32; // may have children (plus-minus mode)
constexpr quint8 Visible = 64;    // a screen buffer handle exists
constexpr quint8 Redraw = 128;    // must be repainted
} // namespace itemflag

// One byte per row. Reads at or past the end give false and writes there do nothing, so a
// handle made before a requery cannot fail on a shorter list.
class CItemFlags
{
public:
    // Elements 0 to nElements; `preset` goes into 0 to nElements - 1.
    void Create(qint64 nElements, quint8 preset);
    quint8 Item(qint64 i) const;
    void setItem(qint64 i, quint8 value);

    bool fRootItem(qint64 i) const { return get(i, itemflag::RootItem); }
    void setFRootItem(qint64 i, bool on) { set(i, itemflag::RootItem, on); }
    bool fLastItem(qint64 i) const { return get(i, itemflag::LastItem); }
    void setFLastItem(qint64 i, bool on) { set(i, itemflag::LastItem, on); }
    bool fExpanded(qint64 i) const { return get(i, itemflag::Expanded); }
    void setFExpanded(qint64 i, bool on) { set(i, itemflag::Expanded, on); }
    bool fSelected(qint64 i) const { return get(i, itemflag::Selected); }
    void setFSelected(qint64 i, bool on) { set(i, itemflag::Selected, on); }
    bool fExpandable(qint64 i) const { return get(i, itemflag::Expandable); }
    void setFExpandable(qint64 i, bool on) { set(i, itemflag::Expandable, on); }
    bool fVisible(qint64 i) const { return get(i, itemflag::Visible, true); }
    void setFVisible(qint64 i, bool on) { set(i, itemflag::Visible, on, true); }
    bool fRedraw(qint64 i) const { return get(i, itemflag::Redraw); }
    void setFRedraw(qint64 i, bool on) { set(i, itemflag::Redraw, on); }

    qint64 upperBound() const { return qint64(m_items.size()) - 1; }

private:
    bool get(qint64 i, quint8 bit, bool visiblePair = false) const;
    void set(qint64 i, quint8 bit, bool on, bool visiblePair = false);
    bool usable(qint64 i, bool visiblePair) const;
    std::vector<quint8> m_items;
};

// The opened children of a subtree, kept in the order of their rows (ParentIndex) and found
// by the key of their row. Keys compare without regard to case.
class CSortedSubtrees
{
public:
    using Entry = std::pair<QString, std::shared_ptr<CSubTree>>;

    bool Add(const std::shared_ptr<CSubTree>& subtree, const QString& key);
    std::shared_ptr<CSubTree> Item(const QString& key) const; // nothing when absent
    std::shared_ptr<CSubTree> Item(int index) const;          // 1-based
    int Count() const { return int(m_items.size()); }
    void Remove(const QString& key);
    void Remove(int index);
    void Resort();
    void Clear();

    // NewEnum: the children in order.
    std::vector<Entry>::const_iterator begin() const { return m_items.begin(); }
    std::vector<Entry>::const_iterator end() const { return m_items.end(); }
    std::vector<std::shared_ptr<CSubTree>> items() const;

private:
    int indexOf(const QString& key) const;
    std::vector<Entry> m_items;
};

// What the root of a tree tells the control.
class TreeEvents
{
public:
    virtual ~TreeEvents() = default;
    virtual void SelectionChange() {}
    virtual void SubItemSelect(const std::shared_ptr<CTreeItem>& item) { (void)item; }
    virtual CTreeLevels* LevelInfo() = 0;
    virtual void Redraw(int redrawMode) { (void)redrawMode; } // 0 plain, 1 expanded, 2 collapsed
};

// What TreeItemData reads of one row.
struct TreeRowData
{
    QString key;
    QString caption;
    qint16 level = 0;
    qint16 icon = 0;
    quint8 flags = 0;
    QString parentKey;
};

class CSubTree : public std::enable_shared_from_this<CSubTree>
{
public:
    static std::shared_ptr<CSubTree> make() { return std::make_shared<CSubTree>(); }
    ~CSubTree();

    qint32 VisibleCount = -1;
    qint16 Level = 1;
    std::weak_ptr<CSubTree> Parent;
    qint32 ParentIndex = -1;
    qint32 ResultNode = 0;
    std::unique_ptr<db::Recordset> Nodes;
    CSortedSubtrees SubTrees;
    QString KeyStr;
    QString SelKey;
    CItemFlags flags;

    // The root's listener; children reach it through the root.
    void setEvents(TreeEvents* events) { m_events = events; }

    void RaiseSelectionChange();
    void RaiseSubItemSelect(const std::shared_ptr<CTreeItem>& item);
    CTreeLevels* FetchLevels();
    void RaiseRedraw(int redrawMode);
    void Expandable(qint32 index, bool on);
    bool IsParent(qint32 index);
    std::shared_ptr<CSubTree> Create(const std::shared_ptr<CSubTree>& parent, const QString& key,
                                     qint32 parentIndex);
    qint64 Requery();
    void ExpandAll();
    std::shared_ptr<CSubTree> CascadeExpand(QStringList& itemKeys);
    std::shared_ptr<CTreeItem> CascadeExpandEx(QStringList& itemKeys);
    std::shared_ptr<CSubTree> Expand(const QString& key);
    std::shared_ptr<CSubTree> Expand(qint32 localIndex);
    void Collapse(const QString& key);
    void Collapse(qint32 localIndex);
    qint32 NodesCountEx();
    qint32 NodesCount(bool recalc);
    void AdjustCount(qint32 delta);
    bool TreeItemData(qint32 nodeIndex, TreeRowData& out);
    QVariant NodeKey(qint32 nodeIndex);
    QString NodeText(qint32 nodeIndex);
    std::shared_ptr<CSubTree> FindSubTree(qint32 absoluteIndex);
    std::shared_ptr<CSubTree> FindSubTree(qint32 absoluteIndex, qint32 offset);
    std::shared_ptr<CTreeItem> FindTreeItem(qint32 absoluteIndex);
    qint32 GetAbsoluteIndex(qint32 locIndex);
    qint32 FindLocalIndex(const QString& itemKey);
    qint32 FindString(const QString& text, std::shared_ptr<CSubTree>& subtree);
    bool FindSelectedItem(qint32& localIndex, std::shared_ptr<CSubTree>& subtree);
    void nSelectItem(qint32 localIndex);
    void SelectItem(qint32 localIndex);
    // Errors pass to the caller (DbError), as this routine has no handler of its own.
    QVariant GetFieldValue(const QString& fieldName, qint32 nodeIndex);

    // Internal, public for the handles and the tests.
    void ClearReferences();
    bool InsertSubtree(qint32 nodeIndex);
    void RemoveSubtree(qint32 nodeIndex);
    std::shared_ptr<CSubTree> NextSubtree();
    std::shared_ptr<CSubTree> GetRootTree();
    qint64 rowCount() const;

private:
    db::Recordset& nodes() const;
    void position(qint32 nodeIndex) const;
    QString keyText(qint32 nodeIndex);
    quint8 preset(CTreeLevels& levels) const;
    std::shared_ptr<CSubTree> findSubTree(qint32 absoluteIndex, qint32 base);
    void requeryChildren();
    void restoreSelection(bool hadSelection, qint32 oldSel);

    TreeEvents* m_events = nullptr;
};

} // namespace vd::controls
