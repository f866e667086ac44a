#pragma once
// The visible tree: a scroll surface of 16-pixel rows over the tree engine. It owns the level
// definitions, the root subtree and the screen buffer; each paint fills the buffer with the
// rows in the window only, so a tree over a million entries opens and scrolls at once. Keys
// and clicks become engine calls; what happens goes out as signals.

#include "controls/TreeItem.h"
#include "controls/TreeLevels.h"
#include "controls/ui/SimpleReport.h"
#include "controls/ui/TreeLines.h"

#include <array>
#include <memory>
#include <QAbstractScrollArea>
#include <QIcon>
#include <QPoint>
#include <QVariantMap>
#include <QVector>

namespace vd::db {
class Database;
}

namespace vd::controls {

class UserTree : public QAbstractScrollArea, public TreeEvents
{
    Q_OBJECT

public:
    static constexpr int kRowHeight = 16;
    static constexpr int kIconSize = 16;
    static constexpr int kMaxDrawLevels = 256;
    static constexpr int kMaxSelectLevel = 33;

    // What lies under a point: the plus or minus column, the icon and text, or nothing.
    enum Zone
    {
        NoZone = 0,
        ItemZone = 1,
        SignZone = 2
    };
    // ToggleItem's modes.
    enum ToggleMode
    {
        Toggle = 0,
        ExpandOnly = 1,
        CollapseOnly = 2
    };

    explicit UserTree(QWidget* parent = nullptr);
    ~UserTree() override;

    // The catalogue; nothing empties the tree and its levels.
    db::Database* DataBase() const;
    void setDataBase(db::Database* database);
    // The level statements: levels()->Setup(...) builds the tree.
    CTreeLevels* levels() { return m_levels.get(); }

    // Properties, with the defaults of a new tree.
    bool Enabled() const { return isEnabled(); }
    int BorderStyle() const { return m_borderStyle; }
    void setBorderStyle(int style);
    bool HideSelection() const { return m_hideSelection; }
    void setHideSelection(bool on);
    int Indentation() const { return m_indentation; }
    void setIndentation(int steps);
    int Style() const { return m_style; }
    using QAbstractScrollArea::setStyle;
    void setStyle(int style);
    int TextSpacer() const { return m_textSpacer; }
    void setTextSpacer(int pixels);
    bool TranslateIcons() const { return m_translateIcons; }
    void setTranslateIcons(bool on) { m_translateIcons = on; }
    int PlusMinusMode() const { return m_plusMinusMode; }
    void setPlusMinusMode(int mode) { m_plusMinusMode = mode; }
    bool DblClickOnReturn() const { return m_dblClickOnReturn; }
    void setDblClickOnReturn(bool on) { m_dblClickOnReturn = on; }

    // The stored properties by their keys; a missing key gives the default.
    void ReadProperties(const QVariantMap& bag);
    QVariantMap WriteProperties() const;

    // Icon number n is entry n - 1. Each set copies the list.
    const QVector<QIcon>& StandardIcons() const { return m_standardIcons; }
    void setStandardIcons(const QVector<QIcon>& icons);
    const QVector<QIcon>& ExpandedIcons() const { return m_expandedIcons; }
    void setExpandedIcons(const QVector<QIcon>& icons);

    void Refresh();
    void ExpandAll();
    qint32 ItemCount();
    void Requery(bool ignoreParents = false);
    TreeItemP SelectedItem();
    TreeItemP TreeItems(qint32 absoluteIndex);
    void Synchronize(const cListItem& listItem);
    // Opens the tree down to the row of `itemKey` at `level` and makes it current.
    bool SelectItem(const QString& itemKey, int level);

    void ActivateItem(const TreeItemP& item);
    // False when the row is no parent or the mode has nothing to do.
    bool ToggleItem(const TreeItemP& item, int mode = Toggle);
    // The zone under a point of the surface; `row`, when given, gets the buffer row.
    int Hittest(int x, int y, int* row = nullptr);

    // The surface: the first row shown, and how many rows fit whole.
    qint32 TopRow() const;
    int VisibleRows() const;
    // The widest row painted so far, in pixels.
    int WidestRow() const { return m_widest; }
    bool ready() const { return m_ready; }

signals:
    // The control's events; the icon by reference, so that a handler may change it.
    void translateIcon(qint16& icon, int level);
    void selectionChange();
    void itemDblClick();
    void beforeExpand();
    void afterExpand();
    void beforeSetup();
    void afterSetup();
    void keydown(int keyCode, int shift);
    void mouseMove(int button, int shift, int x, int y);
    void mouseDown(int button, int shift, int x, int y);
    void mouseUp(int button, int shift, int x, int y);

protected:
    // The root's events.
    void SelectionChange() override;
    void SubItemSelect(const TreeItemP& item) override;
    CTreeLevels* LevelInfo() override;
    void Redraw(int redrawMode) override;

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void TreeLevelsChanged();
    void InitControl();
    void dropTree();
    void AdjustScrollbar();
    void EnsureVisible(const TreeItemP& item);
    void ensureRowsVisible(qint32 first, qint32 count);
    void scrollTo(qint32 topRow);
    void fillBuffer();
    bool navigate(int key);
    bool scrollByKey(int key);
    void moveTo(qint32 absoluteIndex);

    // Painting.
    int levelWidth() const { return m_indentation * 16 + 16; }
    void FillLevelPicBuffer();
    void Paintitem(QPainter& p, const TreeItemP& item, int bufferRow);
    int Painttext(QPainter& p, const TreeItemP& item, int x, int y);
    QString rowText(const TreeItemP& item) const;
    const QIcon* iconFor(const TreeItemP& item);

    std::unique_ptr<CTreeLevels> m_levels;
    std::shared_ptr<CSubTree> m_root;
    std::unique_ptr<CScreenBuffer> m_buffer;
    bool m_ready = false;

    int m_borderStyle = 1;
    bool m_hideSelection = false;
    int m_indentation = 1;
    int m_style = 1;
    int m_textSpacer = 0;
    bool m_translateIcons = false;
    int m_plusMinusMode = 0;
    bool m_dblClickOnReturn = false;
    QVector<QIcon> m_standardIcons;
    QVector<QIcon> m_expandedIcons;

    std::array<quint8, kMaxDrawLevels> m_levelPics{};
    TreeLineColors m_lineColors;
    int m_widest = 0;
    QPoint m_mouseUpAt{-1, -1};
    int m_expandDepth = 0; // BeforeExpand fired and AfterExpand not yet
};

} // namespace vd::controls
