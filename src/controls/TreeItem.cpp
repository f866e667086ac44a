#include "controls/TreeItem.h"

#include "catalogue/Recordset.h"
#include "controls/ControlErrors.h"
#include "controls/TreeLevels.h"

namespace vd::controls {

// --- CTreeItem -----------------------------------------------------------------------------

TreeItemP CTreeItem::Create(qint32 localIndex, const std::shared_ptr<CSubTree>& tree)
{
    return treeGuard("CTreeItem_Create", TreeItemP(), [&]() -> TreeItemP {
        if (!tree)
            return nullptr;
        auto item = std::make_shared<CTreeItem>();
        item->Tree = tree;
        item->localIndex = localIndex;
        TreeRowData row;
        if (!tree->TreeItemData(localIndex, row))
            return nullptr;
        item->Key = row.key;
        item->ParentKey = row.parentKey;
        item->Caption = row.caption;
        item->Level = row.level;
        item->Icon = row.icon;
        item->flags = row.flags;
        return item;
    });
}

std::shared_ptr<CSubTree> CTreeItem::child()
{
    return Tree->SubTrees.Item(Key);
}

TreeItemP CTreeItem::ParentItem()
{
    return treeGuard("CTreeItem_ParentItem", TreeItemP(), [&]() -> TreeItemP {
        auto parent = Tree->Parent.lock();
        return parent ? Create(Tree->ParentIndex, parent) : nullptr;
    });
}

TreeItemP CTreeItem::PrevItem()
{
    return treeGuard("CTreeItem_PrevItem", TreeItemP(), [&]() -> TreeItemP {
        const qint32 abs = AbsoluteIndex();
        return abs > 0 ? Tree->GetRootTree()->FindTreeItem(abs - 1) : nullptr;
    });
}

TreeItemP CTreeItem::NextItem()
{
    return treeGuard("CTreeItem_NextItem", TreeItemP(), [&]() -> TreeItemP {
        if (Tree->flags.fExpanded(localIndex))
            if (auto sub = child())
                return Create(0, sub);
        if (!Tree->flags.fLastItem(localIndex))
            return Create(localIndex + 1, Tree);
        auto next = Tree->NextSubtree();
        return next ? Create(next->ResultNode, next) : nullptr;
    });
}

void CTreeItem::Requery(bool ignoreParents)
{
    treeGuard("CTreeItem_Requery", [&] {
        if (!Tree->flags.fExpanded(localIndex))
            return;
        if (!ignoreParents)
            Tree->FetchLevels()->CreateParentBuffers(true);
        Tree->Requery();
        Tree->GetRootTree()->RaiseRedraw(0);
    });
}

qint32 CTreeItem::Index()
{
    try {
        return Tree ? Tree->GetAbsoluteIndex(localIndex) : 0;
    } catch (...) {
        return 0;
    }
}

qint32 CTreeItem::AbsoluteIndex()
{
    return treeGuard("CTreeItem_AbsoluteIndex", qint32(0),
                     [&] { return Tree->GetAbsoluteIndex(localIndex); });
}

bool CTreeItem::Expanded()
{
    return Tree->flags.fExpanded(localIndex);
}

void CTreeItem::setExpanded(bool on)
{
    treeGuard("CTreeItem_Expanded", [&] {
        if (!on) {
            Tree->Collapse(localIndex);
            Tree->RaiseRedraw(2);
            return;
        }
        if (!IsParent())
            return;
        if (Tree->Expand(localIndex)) {
            Tree->RaiseRedraw(1);
            return;
        }
        // The plus sign was a lie.
        CTreeLevels* levels = Tree->FetchLevels();
        if (levels->FetchPlusMinusMode() != 0) {
            Tree->flags.setFExpandable(localIndex, false);
        } else {
            levels->CreateParentBuffers(true);
            Tree->Requery();
        }
        Tree->GetRootTree()->RaiseRedraw(0);
    });
}

qint32 CTreeItem::SubItemCount()
{
    return treeGuard("CTreeItem_SubItemCount", qint32(0), [&] {
        if (!IsParent())
            return qint32(0);
        auto sub = child();
        return sub ? sub->NodesCount(false) : qint32(0);
    });
}

qint32 CTreeItem::SubItemCountEx(bool firstGeneration)
{
    return treeGuard("CTreeItem_SubItemCount", qint32(0), [&] {
        if (!IsParent())
            return qint32(0);
        auto sub = child();
        if (!sub)
            return qint32(0);
        return firstGeneration ? sub->NodesCountEx() : sub->NodesCount(false);
    });
}

bool CTreeItem::SelectSubItem(const QString& subItemKey)
{
    return treeGuard("CTreeItem_SelectSubItem", false, [&] {
        if (!IsParent())
            return false;
        auto sub = Tree->Expand(localIndex);
        if (!sub)
            return false;
        const qint32 i = sub->FindLocalIndex(subItemKey);
        if (i < 0)
            return false;
        TreeItemP handle = Create(i, sub);
        if (!handle)
            return false;
        Tree->RaiseSubItemSelect(handle);
        return handle->Selected();
    });
}

void CTreeItem::ExpandAll()
{
    treeGuard("CTreeItem_ExpandAll", [&] {
        if (!IsParent())
            return;
        auto sub = Tree->Expand(localIndex);
        if (!sub)
            Tree->flags.setFExpandable(localIndex, false);
        else
            sub->ExpandAll();
        Tree->RaiseRedraw(1);
    });
}

TreeItemP CTreeItem::FindTreeItem(qint32 absoluteIndex)
{
    return Tree->FindTreeItem(absoluteIndex);
}

QVariant CTreeItem::GetFieldValue(const QString& fieldName)
{
    return Tree->GetFieldValue(fieldName, localIndex);
}

int CTreeItem::TreeLineIcon()
{
    return treeGuard("CTreeItem_TreeLineIcon", 0, [&] {
        const quint8 f = Tree->flags.Item(localIndex);
        const bool root = f & itemflag::RootItem;
        const bool last = f & itemflag::LastItem;
        int icon = root && last ? 10 : root ? 1 : last ? 7 : 4;
        if (f & itemflag::Expanded)
            icon += 2;
        else if (IsParent())
            icon += 1;
        return icon;
    });
}

bool CTreeItem::Selected()
{
    return Tree->flags.fSelected(localIndex);
}

void CTreeItem::setSelected(bool on)
{
    treeGuard("CTreeItem_Selected", [&] {
        Tree->flags.setFSelected(localIndex, on);
        flags = Tree->flags.Item(localIndex);
        Tree->SelKey = on ? Key : QString();
        Tree->flags.setFRedraw(localIndex, Tree->flags.fVisible(localIndex));
    });
}

bool CTreeItem::IsLastItem()
{
    return Tree->flags.fLastItem(localIndex);
}

bool CTreeItem::IsParent()
{
    return Tree->IsParent(localIndex);
}

bool CTreeItem::RedrawFlag()
{
    return Tree->flags.fRedraw(localIndex);
}

void CTreeItem::setRedrawFlag(bool on)
{
    Tree->flags.setFRedraw(localIndex, on);
}

bool CTreeItem::Visible()
{
    return Tree->flags.fVisible(localIndex);
}

void CTreeItem::setVisible(bool on)
{
    Tree->flags.setFVisible(localIndex, on);
    Tree->flags.setFRedraw(localIndex, on);
}

// --- CScreenBuffer -------------------------------------------------------------------------

TreeItemP CScreenBuffer::Item(int row) const
{
    return row >= 0 && row < Count() ? m_rows[row] : nullptr;
}

void CScreenBuffer::Remove(int row)
{
    if (row < 0 || row >= Count())
        return;
    m_rows[row]->setVisible(false);
    m_rows.removeAt(row);
}

void CScreenBuffer::Append(const TreeItemP& item, int position)
{
    if (!item)
        return;
    if (position == -1 || position - 1 >= Count())
        m_rows.append(item);
    else
        m_rows.insert(std::max(0, position - 1), item);
    item->setVisible(true);
}

void CScreenBuffer::Clear()
{
    while (Count() > 0)
        Remove(0);
}

void CScreenBuffer::Fill(const std::shared_ptr<CSubTree>& root, qint32 bufAbsIndex, int nRows)
{
    treeGuard("Screenbuffer_Fill", [&] {
        Clear();
        BufAbsIndex = bufAbsIndex;
        TreeItemP item = root->FindTreeItem(bufAbsIndex);
        for (int i = 0; i < nRows && item; ++i) {
            Append(item);
            item = item->NextItem();
        }
        qint32 index = -1;
        std::shared_ptr<CSubTree> tree;
        if (root->FindSelectedItem(index, tree))
            SelectedItem = CTreeItem::Create(index, tree);
        RedrawMode = Filled;
    });
}

void CScreenBuffer::ScrollDownBuffer()
{
    treeGuard("Screenbuffer_ScrollDownBuffer", [&] {
        Remove(0);
        ++BufAbsIndex;
        for (int row = std::max(0, MaxRow() - 1); row <= MaxRow(); ++row)
            m_rows[row]->setRedrawFlag(true);
        if (Count() > 0)
            if (TreeItemP next = m_rows.last()->NextItem())
                Append(next);
        RedrawMode = ScrolledDown;
    });
}

void CScreenBuffer::ScrollUpBuffer()
{
    treeGuard("Screenbuffer_ScrollupBuffer", [&] {
        if (BufAbsIndex <= 0 || Count() == 0)
            return;
        --BufAbsIndex;
        if (TreeItemP prev = m_rows.first()->PrevItem()) {
            Append(prev, 1);
            prev->setRedrawFlag(true);
        }
        Remove(MaxRow());
        RedrawMode = ScrolledUp;
    });
}

void CScreenBuffer::RedrawHighlight()
{
    if (SelectedItem)
        SelectedItem->setRedrawFlag(true);
    RedrawMode = SelectionMoved;
}

bool CScreenBuffer::MakeSelection(const TreeItemP& item)
{
    return treeGuard("Screenbuffer_MakeSelection", false, [&] {
        if (!item)
            return false;
        if (SelectedItem && SelectedItem->AbsoluteIndex() == item->AbsoluteIndex())
            return false;
        if (SelectedItem)
            SelectedItem->setSelected(false);
        item->setSelected(true);
        SelectedItem = item;
        RedrawMode = SelectionMoved;
        return true;
    });
}

bool CScreenBuffer::SelectRow(int row)
{
    return row >= 0 && row <= MaxRow() && MakeSelection(Item(row));
}

} // namespace vd::controls
