#include "controls/SubTree.h"

#include "app/Translate.h"
#include "catalogue/DaoTypes.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "controls/ControlErrors.h"
#include "controls/SqlTree.h"
#include "controls/TreeItem.h"
#include "controls/TreeLevels.h"
#include "platform/DialogService.h"

namespace vd::controls {

// --- CItemFlags ----------------------------------------------------------------------------

void CItemFlags::Create(qint64 nElements, quint8 preset)
{
    m_items.assign(size_t(std::max<qint64>(nElements, 0) + 1), preset);
    m_items.back() = 0;
}

bool CItemFlags::usable(qint64 i, bool visiblePair) const
{
    if (i < 0) {
        platform::dialogs().msgBox(app::Translate(
            visiblePair ? QStringLiteral("ItemFlags (fVisible): Hier trat ein Fehler auf")
                        : QStringLiteral("ItemFlags: Hier trat ein Fehler auf")));
        return false;
    }
    return i < upperBound();
}

quint8 CItemFlags::Item(qint64 i) const
{
    return usable(i, false) ? m_items[size_t(i)] : 0;
}

void CItemFlags::setItem(qint64 i, quint8 value)
{
    if (usable(i, false))
        m_items[size_t(i)] = value;
}

bool CItemFlags::get(qint64 i, quint8 bit, bool visiblePair) const
{
    return usable(i, visiblePair) && (m_items[size_t(i)] & bit) != 0;
}

void CItemFlags::set(qint64 i, quint8 bit, bool on, bool visiblePair)
{
    if (!usable(i, visiblePair))
        return;
    if (on)
        m_items[size_t(i)] |= bit;
    else
        m_items[size_t(i)] &= quint8(~bit);
}

// --- CSortedSubtrees -----------------------------------------------------------------------

int CSortedSubtrees::indexOf(const QString& key) const
{
    for (size_t i = 0; i < m_items.size(); ++i)
        if (m_items[i].first.compare(key, Qt::CaseInsensitive) == 0)
            return int(i);
    return -1;
}

bool CSortedSubtrees::Add(const std::shared_ptr<CSubTree>& subtree, const QString& key)
{
    if (indexOf(key) >= 0) {
        ReportTreeError(
            QStringLiteral("SortedSubTree_Add"), 457,
            app::Translate(QStringLiteral("Dieser Schlüssel ist bereits einem Element dieser "
                                          "Auflistung zugeordnet")));
        return false;
    }
    auto at = m_items.begin();
    while (at != m_items.end() && at->second->ParentIndex <= subtree->ParentIndex)
        ++at;
    m_items.insert(at, Entry(key, subtree));
    return true;
}

std::shared_ptr<CSubTree> CSortedSubtrees::Item(const QString& key) const
{
    const int i = indexOf(key);
    return i < 0 ? nullptr : m_items[size_t(i)].second;
}

std::shared_ptr<CSubTree> CSortedSubtrees::Item(int index) const
{
    return index >= 1 && index <= Count() ? m_items[size_t(index - 1)].second : nullptr;
}

void CSortedSubtrees::Remove(const QString& key)
{
    const int i = indexOf(key);
    if (i >= 0)
        m_items.erase(m_items.begin() + i);
}

void CSortedSubtrees::Remove(int index)
{
    if (index >= 1 && index <= Count())
        m_items.erase(m_items.begin() + (index - 1));
}

void CSortedSubtrees::Resort()
{
    std::vector<Entry> old;
    old.swap(m_items);
    for (const Entry& e : old)
        Add(e.second, e.second->KeyStr);
}

void CSortedSubtrees::Clear()
{
    while (Count() > 0)
        Remove(1);
}

std::vector<std::shared_ptr<CSubTree>> CSortedSubtrees::items() const
{
    std::vector<std::shared_ptr<CSubTree>> out;
    out.reserve(m_items.size());
    for (const Entry& e : m_items)
        out.push_back(e.second);
    return out;
}

// --- CSubTree: rows ------------------------------------------------------------------------

CSubTree::~CSubTree() = default;

db::Recordset& CSubTree::nodes() const
{
    if (!Nodes)
        throw db::DbError(rterr::ObjectMissing,
                          app::Translate(QStringLiteral(
                              "Objektvariable oder With-Blockvariable nicht festgelegt")));
    return *Nodes;
}

qint64 CSubTree::rowCount() const
{
    return Nodes ? Nodes->recordCount() : 0;
}

void CSubTree::position(qint32 nodeIndex) const
{
    nodes().setAbsolutePosition(nodeIndex);
}

QString CSubTree::keyText(qint32 nodeIndex)
{
    return catalogue::ValueText(NodeKey(nodeIndex));
}

quint8 CSubTree::preset(CTreeLevels& levels) const
{
    return levels.FetchPlusMinusMode() != 0 && Level < levels.Count() ? itemflag::Expandable : 0;
}

bool CSubTree::TreeItemData(qint32 nodeIndex, TreeRowData& out)
{
    return treeGuard("Subtree_TreeItemData", false, [&] {
        position(nodeIndex);
        db::Recordset& rs = nodes();
        out.key = catalogue::ValueText(rs.value(0));
        out.parentKey = catalogue::ValueText(rs.value(1));
        out.icon = qint16(rs.value(2).toInt());
        out.caption = catalogue::ValueText(rs.value(3));
        out.level = Level;
        out.flags = flags.Item(nodeIndex);
        return true;
    });
}

QVariant CSubTree::NodeKey(qint32 nodeIndex)
{
    return treeGuard("Subtree_NodeKey", QVariant(), [&] {
        position(nodeIndex);
        return nodes().value(0);
    });
}

QString CSubTree::NodeText(qint32 nodeIndex)
{
    return treeGuard("Subtree_NodeText", QString(), [&] {
        position(nodeIndex);
        return catalogue::ValueText(nodes().value(3));
    });
}

QVariant CSubTree::GetFieldValue(const QString& fieldName, qint32 nodeIndex)
{
    position(nodeIndex);
    return nodes().value(fieldName);
}

// --- CSubTree: events, passed up to the root -----------------------------------------------

std::shared_ptr<CSubTree> CSubTree::GetRootTree()
{
    std::shared_ptr<CSubTree> tree = shared_from_this();
    while (auto parent = tree->Parent.lock())
        tree = parent;
    return tree;
}

void CSubTree::RaiseSelectionChange()
{
    treeGuard("Subtree_NotifySelectionChanges", [&] {
        if (TreeEvents* e = GetRootTree()->m_events)
            e->SelectionChange();
    });
}

void CSubTree::RaiseSubItemSelect(const std::shared_ptr<CTreeItem>& item)
{
    treeGuard("Subtree_RaiseItemSelect", [&] {
        if (TreeEvents* e = GetRootTree()->m_events)
            e->SubItemSelect(item);
    });
}

CTreeLevels* CSubTree::FetchLevels()
{
    TreeEvents* e = GetRootTree()->m_events;
    CTreeLevels* levels = e ? e->LevelInfo() : nullptr;
    if (!levels)
        throw db::DbError(rterr::ObjectMissing,
                          app::Translate(QStringLiteral(
                              "Objektvariable oder With-Blockvariable nicht festgelegt")));
    return levels;
}

void CSubTree::RaiseRedraw(int redrawMode)
{
    treeGuard("Subtree_NotifyChanges", [&] {
        if (TreeEvents* e = GetRootTree()->m_events)
            e->Redraw(redrawMode);
    });
}

// --- CSubTree: opening and closing ---------------------------------------------------------

std::shared_ptr<CSubTree> CSubTree::Create(const std::shared_ptr<CSubTree>& parent,
                                           const QString& key, qint32 parentIndex)
{
    return treeGuard("Subtree_Create", std::shared_ptr<CSubTree>(),
                     [&]() -> std::shared_ptr<CSubTree> {
                         Parent = parent;
                         VisibleCount = -1;
                         if (!parent) {
                             Level = 1;
                             KeyStr.clear();
                             ParentIndex = -1;
                         } else {
                             Level = qint16(parent->Level + 1);
                             KeyStr = key;
                             ParentIndex = parentIndex;
                         }
                         CTreeLevels* levels = FetchLevels();
                         Nodes = levels->Getnodes(Level, KeyStr);
                         if (!Nodes)
                             return nullptr;
                         if (Nodes->recordCount() == 0) {
                             Nodes.reset();
                             return nullptr;
                         }
                         flags.Create(rowCount(), preset(*levels));
                         if (!parent)
                             flags.setFRootItem(0, true);
                         flags.setFLastItem(rowCount() - 1, true);
                         return shared_from_this();
                     });
}

void CSubTree::ClearReferences()
{
    Parent.reset();
    for (const auto& child : SubTrees.items())
        child->ClearReferences();
}

void CSubTree::Expandable(qint32 index, bool on)
{
    flags.setFExpandable(index, on);
}

bool CSubTree::IsParent(qint32 index)
{
    return treeGuard("Subtree_IsParent", false, [&] {
        CTreeLevels* levels = FetchLevels();
        if (levels->FetchPlusMinusMode() != 0)
            return flags.fExpandable(index);
        if (Level < levels->Count()) {
            if (CDistinctBuffer* buffer = levels->parentBuffer(Level)) {
                position(index);
                return buffer->Contains(nodes().value(0));
            }
        }
        return false;
    });
}

bool CSubTree::InsertSubtree(qint32 nodeIndex)
{
    return treeGuard("Subtree_InsertSubtree", false, [&] {
        auto child = make();
        if (!child->Create(shared_from_this(), keyText(nodeIndex), nodeIndex))
            return false;
        if (!SubTrees.Add(child, child->KeyStr)) {
            child->ClearReferences();
            return false;
        }
        AdjustCount(child->NodesCount(false));
        flags.setFExpanded(nodeIndex, true);
        return true;
    });
}

void CSubTree::RemoveSubtree(qint32 nodeIndex)
{
    treeGuard("Subtree_RemoveSubtree", [&] {
        const QString key = keyText(nodeIndex);
        if (auto child = SubTrees.Item(key)) {
            const qint32 n = child->NodesCount(false);
            child->ClearReferences();
            SubTrees.Remove(key);
            AdjustCount(-n);
        }
        flags.setFExpanded(nodeIndex, false);
    });
}

std::shared_ptr<CSubTree> CSubTree::Expand(const QString& key)
{
    return Expand(FindLocalIndex(key));
}

std::shared_ptr<CSubTree> CSubTree::Expand(qint32 localIndex)
{
    return treeGuard("Subtree_Expand", std::shared_ptr<CSubTree>(),
                     [&]() -> std::shared_ptr<CSubTree> {
                         if (localIndex == -1 || !IsParent(localIndex))
                             return nullptr;
                         if (!flags.fExpanded(localIndex) && !InsertSubtree(localIndex))
                             return nullptr;
                         return SubTrees.Item(keyText(localIndex));
                     });
}

void CSubTree::Collapse(const QString& key)
{
    Collapse(FindLocalIndex(key));
}

void CSubTree::Collapse(qint32 localIndex)
{
    treeGuard("Subtree_Collapse", [&] {
        if (localIndex != -1 && IsParent(localIndex) && flags.fExpanded(localIndex))
            RemoveSubtree(localIndex);
    });
}

void CSubTree::ExpandAll()
{
    treeGuard("Subtree_ExpandAll", [&] {
        const qint64 n = rowCount();
        for (qint32 i = 0; i < n; ++i) {
            if (!IsParent(i))
                continue;
            if (!flags.fExpanded(i))
                InsertSubtree(i);
            if (auto child = SubTrees.Item(keyText(i)))
                child->ExpandAll();
            else
                flags.setFExpandable(i, false);
        }
    });
}

std::shared_ptr<CSubTree> CSubTree::CascadeExpand(QStringList& itemKeys)
{
    return treeGuard("Subtree_CascadeExpand", std::shared_ptr<CSubTree>(),
                     [&]() -> std::shared_ptr<CSubTree> {
                         if (itemKeys.isEmpty())
                             return shared_from_this();
                         auto child = Expand(itemKeys.first());
                         if (!child)
                             return nullptr;
                         itemKeys.removeFirst();
                         return child->CascadeExpand(itemKeys);
                     });
}

std::shared_ptr<CTreeItem> CSubTree::CascadeExpandEx(QStringList& itemKeys)
{
    return treeGuard("Subtree_CascadeExpand", std::shared_ptr<CTreeItem>(),
                     [&]() -> std::shared_ptr<CTreeItem> {
                         auto tree = CascadeExpand(itemKeys);
                         return tree ? CTreeItem::Create(tree->ResultNode, tree) : nullptr;
                     });
}

// --- CSubTree: counting and index arithmetic -----------------------------------------------

qint32 CSubTree::NodesCountEx()
{
    return qint32(rowCount());
}

qint32 CSubTree::NodesCount(bool recalc)
{
    if (recalc || VisibleCount == -1) {
        qint64 n = rowCount();
        for (const auto& child : SubTrees.items())
            n += child->NodesCount(recalc);
        VisibleCount = qint32(n);
    }
    return VisibleCount;
}

void CSubTree::AdjustCount(qint32 delta)
{
    if (VisibleCount == -1)
        return;
    VisibleCount += delta;
    if (auto parent = Parent.lock())
        parent->AdjustCount(delta);
}

qint32 CSubTree::GetAbsoluteIndex(qint32 locIndex)
{
    return treeGuard("Subtree_GetAbsoluteIndex", qint32(0), [&] {
        qint32 abs = locIndex;
        for (const auto& child : SubTrees.items()) {
            if (child->ParentIndex >= locIndex)
                break;
            abs += child->NodesCount(false);
        }
        if (auto parent = Parent.lock())
            abs += parent->GetAbsoluteIndex(ParentIndex) + 1;
        return abs;
    });
}

std::shared_ptr<CSubTree> CSubTree::FindSubTree(qint32 absoluteIndex)
{
    return findSubTree(absoluteIndex, 0);
}

std::shared_ptr<CSubTree> CSubTree::FindSubTree(qint32 absoluteIndex, qint32 offset)
{
    return findSubTree(absoluteIndex, offset + 1);
}

std::shared_ptr<CSubTree> CSubTree::findSubTree(qint32 absoluteIndex, qint32 base)
{
    // `base` is the absolute index of this subtree's row 0.
    for (const auto& child : SubTrees.items()) {
        const qint32 pi = child->ParentIndex;
        if (pi + base >= absoluteIndex) {
            ResultNode = absoluteIndex - base;
            return shared_from_this();
        }
        const qint32 n = child->NodesCount(false);
        if (base + pi + n >= absoluteIndex)
            return child->FindSubTree(absoluteIndex, base + pi);
        base += n;
    }
    ResultNode = absoluteIndex - base;
    return shared_from_this();
}

std::shared_ptr<CTreeItem> CSubTree::FindTreeItem(qint32 absoluteIndex)
{
    return treeGuard("Subtree_FindTreeItem", std::shared_ptr<CTreeItem>(),
                     [&]() -> std::shared_ptr<CTreeItem> {
                         auto root = GetRootTree();
                         if (absoluteIndex < 0 || absoluteIndex >= root->NodesCount(false))
                             return nullptr;
                         auto tree = root->FindSubTree(absoluteIndex);
                         return CTreeItem::Create(tree->ResultNode, tree);
                     });
}

std::shared_ptr<CSubTree> CSubTree::NextSubtree()
{
    return treeGuard("Subtree_NextSubtree", std::shared_ptr<CSubTree>(),
                     [&]() -> std::shared_ptr<CSubTree> {
                         auto parent = Parent.lock();
                         if (!parent)
                             return nullptr;
                         if (parent->flags.fLastItem(ParentIndex))
                             return parent->NextSubtree();
                         parent->ResultNode = ParentIndex + 1;
                         return parent;
                     });
}

// --- CSubTree: finding and selecting -------------------------------------------------------

qint32 CSubTree::FindLocalIndex(const QString& itemKey)
{
    return treeGuard("Subtree_FindLocalIndex", qint32(-1), [&] {
        db::Recordset& rs = nodes();
        const db::FieldInfo& f = rs.field(0);
        QString literal = itemKey;
        if (f.type == db::type::Text)
            literal = QLatin1Char('\'') + itemKey + QLatin1Char('\'');
        else if (f.type == db::type::Date)
            literal = MakeKeyLiteral(db::type::Date, itemKey);
        if (!rs.findFirst(f.name + QLatin1Char('=') + literal))
            return qint32(-1);
        return qint32(rs.absolutePosition());
    });
}

qint32 CSubTree::FindString(const QString& text, std::shared_ptr<CSubTree>& subtree)
{
    return treeGuard("Subtree_FindString", qint32(-1), [&] {
        db::Recordset& rs = nodes();
        if (!rs.findFirst(rs.field(1).name + QStringLiteral(" like '*") + text +
                          QStringLiteral("*'")))
            return qint32(-1);
        subtree = shared_from_this();
        return qint32(rs.absolutePosition());
    });
}

bool CSubTree::FindSelectedItem(qint32& localIndex, std::shared_ptr<CSubTree>& subtree)
{
    return treeGuard("Subtree_FindSelectedItem", false, [&] {
        if (!SelKey.isEmpty()) {
            const qint32 i = FindLocalIndex(SelKey);
            if (i >= 0) {
                localIndex = i;
                subtree = shared_from_this();
                return true;
            }
            SelKey.clear();
            return false;
        }
        for (const auto& child : SubTrees.items())
            if (child->FindSelectedItem(localIndex, subtree))
                return true;
        return false;
    });
}

void CSubTree::nSelectItem(qint32 localIndex)
{
    treeGuard("Subtree_nSelectItem", [&] {
        SelKey = keyText(localIndex);
        flags.setFSelected(localIndex, true);
    });
}

void CSubTree::SelectItem(qint32 localIndex)
{
    treeGuard("Subtree_SelectItem", [&] {
        qint32 old = -1;
        std::shared_ptr<CSubTree> tree;
        if (GetRootTree()->FindSelectedItem(old, tree)) {
            tree->SelKey.clear();
            tree->flags.setFSelected(old, false);
        }
        nSelectItem(localIndex);
    });
}

// --- CSubTree: requery, keeping the opened shape -------------------------------------------

qint64 CSubTree::Requery()
{
    return treeGuard("Subtree_Requery", rowCount(), [&] {
        const bool hadSelection = !SelKey.isEmpty();
        const qint32 oldSel = hadSelection ? FindLocalIndex(SelKey) : -1;
        const qint64 oldCount = rowCount();
        CTreeLevels* levels = FetchLevels();
        Nodes = levels->Getnodes(Level, KeyStr);
        flags.Create(rowCount(), preset(*levels));
        if (rowCount() != oldCount)
            AdjustCount(qint32(rowCount() - oldCount));
        requeryChildren();
        SubTrees.Resort();
        if (!Parent.lock() && rowCount() > 0)
            flags.setFRootItem(0, true);
        if (rowCount() > 0)
            flags.setFLastItem(rowCount() - 1, true);
        restoreSelection(hadSelection, oldSel);
        return rowCount();
    });
}

void CSubTree::requeryChildren()
{
    for (const auto& child : SubTrees.items()) {
        const qint32 i = rowCount() > 0 ? FindLocalIndex(child->KeyStr) : -1;
        if (i < 0) {
            AdjustCount(-child->NodesCount(false));
            child->ClearReferences();
            SubTrees.Remove(child->KeyStr);
            continue;
        }
        // The row may have moved: the child belongs to its new place from now on.
        child->ParentIndex = i;
        const bool stillParent = IsParent(i);
        child->Requery();
        if (stillParent && child->rowCount() > 0)
            flags.setFExpanded(i, true);
        else
            RemoveSubtree(i);
    }
}

void CSubTree::restoreSelection(bool hadSelection, qint32 oldSel)
{
    const qint64 n = rowCount();
    if (hadSelection) {
        if (n > 0) {
            const qint32 i = FindLocalIndex(SelKey);
            if (i >= 0) {
                flags.setFSelected(i, true);
                return;
            }
            nSelectItem(oldSel < 0 ? 0 : qint32(std::min<qint64>(oldSel, n - 1)));
            RaiseSelectionChange();
            return;
        }
        SelKey.clear();
        if (auto parent = Parent.lock()) {
            parent->nSelectItem(ParentIndex);
            RaiseSelectionChange();
        }
        return;
    }
    if (!Parent.lock() && SubTrees.Count() == 0 && n > 0) {
        nSelectItem(0);
        RaiseSelectionChange();
        RaiseSubItemSelect(FindTreeItem(0));
    }
}

} // namespace vd::controls
