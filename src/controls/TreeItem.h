#pragma once
// Handles on tree rows, and the handles of the rows on screen.

#include "controls/SubTree.h"

#include <memory>
#include <QList>
#include <QString>
#include <QVariant>

namespace vd::controls {

// A short-lived handle on one row. Key, caption and so on are a snapshot taken when the handle
// was made; Selected, Expanded and the counts go to the subtree.
class CTreeItem
{
public:
    QString Key;
    QString ParentKey;
    QString Caption;
    qint16 Level = 0;
    qint16 Icon = 0;
    quint8 flags = 0;
    std::shared_ptr<CSubTree> Tree;
    qint32 localIndex = 0;

    // Nothing when the row cannot be read.
    static std::shared_ptr<CTreeItem> Create(qint32 localIndex,
                                             const std::shared_ptr<CSubTree>& tree);

    std::shared_ptr<CTreeItem> ParentItem();
    std::shared_ptr<CTreeItem> PrevItem();
    std::shared_ptr<CTreeItem> NextItem();
    void Requery(bool ignoreParents);
    void Update() {}
    qint32 Index();
    bool Expanded();
    void setExpanded(bool on);
    qint32 SubItemCount();
    qint32 SubItemCountEx(bool firstGeneration);
    bool SelectSubItem(const QString& subItemKey);
    void ExpandAll();
    std::shared_ptr<CTreeItem> FindTreeItem(qint32 absoluteIndex);
    // Errors pass to the caller (DbError).
    QVariant GetFieldValue(const QString& fieldName);

    // The connector picture: 1-3 first row, 4-6 middle, 7-9 last, 10-12 only row; each as
    // leaf, closed, open.
    int TreeLineIcon();
    bool Selected();
    void setSelected(bool on);
    qint32 AbsoluteIndex();
    bool IsLastItem();
    bool IsParent();
    bool RedrawFlag();
    void setRedrawFlag(bool on);
    bool Visible();
    void setVisible(bool on);

private:
    std::shared_ptr<CSubTree> child();
};

using TreeItemP = std::shared_ptr<CTreeItem>;

// The handles of the rows in the window; row 0 is the top row.
class CScreenBuffer
{
public:
    enum RedrawModes
    {
        Filled = 0,
        ScrolledDown = 1,
        ScrolledUp = 2,
        SelectionMoved = 4
    };

    qint32 BufAbsIndex = 0;
    TreeItemP SelectedItem;
    qint32 RedrawMode = Filled;

    int Count() const { return int(m_rows.size()); }
    TreeItemP Item(int row) const; // nothing outside 0 to MaxRow
    int MaxRow() const { return Count() - 1; }
    void Remove(int row);
    // `position` -1 appends; any other value inserts before that 1-based place.
    void Append(const TreeItemP& item, int position = -1);
    void Clear();
    void Fill(const std::shared_ptr<CSubTree>& root, qint32 bufAbsIndex, int nRows);
    void ScrollUpBuffer();
    void ScrollDownBuffer();
    void RedrawHighlight();
    bool MakeSelection(const TreeItemP& item);
    bool SelectRow(int row);

private:
    QList<TreeItemP> m_rows;
};

} // namespace vd::controls
