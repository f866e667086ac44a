#include "controls/ui/UserTree.h"

#include "app/Translate.h"
#include "catalogue/RowOps.h"
#include "controls/ControlErrors.h"
#include "platform/DialogService.h"

#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionFocusRect>

namespace vd::controls {

namespace {

// The key state the events carry: 1 Shift, 2 Ctrl, 4 Alt.
int shiftCode(Qt::KeyboardModifiers m)
{
    return (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) |
           (m & Qt::AltModifier ? 4 : 0);
}

// Buttons as the events number them: 1 left, 2 right, 4 middle.
int buttonCode(Qt::MouseButtons b)
{
    return (b & Qt::LeftButton ? 1 : 0) | (b & Qt::RightButton ? 2 : 0) |
           (b & Qt::MiddleButton ? 4 : 0);
}

int intFrom(const QVariantMap& bag, const char* key, int fallback)
{
    bool ok = false;
    const int n = bag.value(QLatin1String(key)).toInt(&ok);
    return ok ? n : fallback;
}

bool boolFrom(const QVariantMap& bag, const char* key, bool fallback)
{
    const QVariant v = bag.value(QLatin1String(key));
    return v.isValid() ? v.toBool() : fallback;
}

// The hourglass while a level opens.
class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace

UserTree::UserTree(QWidget* parent)
    : QAbstractScrollArea(parent), m_levels(std::make_unique<CTreeLevels>())
{
    setFocusPolicy(Qt::StrongFocus);
    setBorderStyle(m_borderStyle);
    viewport()->setMouseTracking(true);
    viewport()->setBackgroundRole(QPalette::Base);
    verticalScrollBar()->setSingleStep(1);
    horizontalScrollBar()->setSingleStep(kIconSize);
    connect(m_levels.get(), &CTreeLevels::Changed, this, &UserTree::TreeLevelsChanged);
}

UserTree::~UserTree()
{
    treeGuard("UserTree_Terminate", [&] {
        disconnect(m_levels.get(), nullptr, this, nullptr);
        dropTree();
    });
}

// --- data and set-up -----------------------------------------------------------------------

db::Database* UserTree::DataBase() const
{
    return m_levels->database();
}

void UserTree::setDataBase(db::Database* database)
{
    treeGuard("UserTree_Database", [&] {
        // Rows of the old catalogue must not outlive it on the screen.
        dropTree();
        m_levels->Clear();
        m_levels->Create(database, m_plusMinusMode);
    });
}

void UserTree::TreeLevelsChanged()
{
    treeGuard("UserTree_TreeLevels_Changed", [&] {
        emit beforeSetup();
        InitControl();
        emit afterSetup();
    });
}

void UserTree::InitControl()
{
    treeGuard("UserTree_InitControl", [&] {
        setEnabled(false);
        dropTree();
        if (m_levels->Count() < 1) {
            platform::dialogs().msgBox(app::Translate(
                QStringLiteral("Keine Levels vorhanden, oder Fehler bei Erstellung aufgetreten!")));
            return;
        }
        if (m_standardIcons.isEmpty())
            m_style = 0;
        m_root = CSubTree::make();
        m_root->setEvents(this);
        m_root->Create(nullptr, QString(), -1); // an empty first level leaves an empty tree
        m_buffer = std::make_unique<CScreenBuffer>();
        m_ready = true;
        m_widest = 0;
        setEnabled(true);
        Refresh();
        ActivateItem(TreeItems(0));
    });
}

void UserTree::dropTree()
{
    m_ready = false;
    if (m_buffer)
        m_buffer->Clear();
    m_buffer.reset();
    if (m_root) {
        m_root->ClearReferences();
        m_root->setEvents(nullptr);
        m_root.reset();
    }
    verticalScrollBar()->setRange(0, 0);
    horizontalScrollBar()->setRange(0, 0);
    viewport()->update();
}

// --- properties ----------------------------------------------------------------------------

void UserTree::setBorderStyle(int style)
{
    m_borderStyle = style;
    setFrameStyle(style == 0 ? QFrame::NoFrame : QFrame::StyledPanel | QFrame::Sunken);
}

void UserTree::setHideSelection(bool on)
{
    m_hideSelection = on;
    viewport()->update();
}

void UserTree::setIndentation(int steps)
{
    m_indentation = std::clamp(steps, 0, 64);
    viewport()->update();
}

void UserTree::setStyle(int style)
{
    m_style = style;
    viewport()->update();
}

void UserTree::setTextSpacer(int pixels)
{
    m_textSpacer = std::max(0, pixels);
    viewport()->update();
}

void UserTree::setStandardIcons(const QVector<QIcon>& icons)
{
    m_standardIcons = icons;
    viewport()->update();
}

void UserTree::setExpandedIcons(const QVector<QIcon>& icons)
{
    m_expandedIcons = icons;
    viewport()->update();
}

void UserTree::ReadProperties(const QVariantMap& bag)
{
    treeGuard("UserTree_ReadProperties", [&] {
        setEnabled(boolFrom(bag, "Enabled", true));
        setBorderStyle(intFrom(bag, "BorderStyle", 1));
        const QVariant font = bag.value(QStringLiteral("Font"));
        if (font.canConvert<QFont>() && font.typeId() == QMetaType::QFont) {
            setFont(font.value<QFont>());
        } else if (!font.toString().isEmpty()) {
            QFont f;
            if (f.fromString(font.toString()))
                setFont(f);
        }
        setHideSelection(boolFrom(bag, "HideSelection", false));
        setIndentation(intFrom(bag, "Indentation", 1));
        setStyle(intFrom(bag, "Style", 1));
        setTextSpacer(intFrom(bag, "TextSpacer", 0));
        setTranslateIcons(boolFrom(bag, "TranslateIcons", false));
        setPlusMinusMode(intFrom(bag, "PlusMinusMode", 0));
        setDblClickOnReturn(boolFrom(bag, "DblClickOnReturn", false));
    });
}

QVariantMap UserTree::WriteProperties() const
{
    return {{QStringLiteral("Enabled"), isEnabled()},
            {QStringLiteral("BorderStyle"), m_borderStyle},
            {QStringLiteral("Font"), font().toString()},
            {QStringLiteral("HideSelection"), m_hideSelection},
            {QStringLiteral("Indentation"), m_indentation},
            {QStringLiteral("Style"), m_style},
            {QStringLiteral("TextSpacer"), m_textSpacer},
            {QStringLiteral("TranslateIcons"), m_translateIcons},
            {QStringLiteral("PlusMinusMode"), m_plusMinusMode},
            {QStringLiteral("DblClickOnReturn"), m_dblClickOnReturn}};
}

// --- the tree as a whole -------------------------------------------------------------------

void UserTree::Refresh()
{
    treeGuard("UserTree_Refresh", [&] {
        if (!m_ready)
            return;
        AdjustScrollbar();
        viewport()->update();
    });
}

void UserTree::AdjustScrollbar()
{
    treeGuard("UserTree_AdjustScrollbar", [&] {
        if (!m_ready)
            return;
        const int rows = VisibleRows();
        verticalScrollBar()->setPageStep(rows);
        verticalScrollBar()->setRange(0, std::max(0, m_root->NodesCount(false) - rows));
        const int width = viewport()->width();
        horizontalScrollBar()->setPageStep(std::max(1, width));
        horizontalScrollBar()->setRange(0, std::max(0, m_widest - width));
    });
}

void UserTree::ExpandAll()
{
    treeGuard("UserTree_ExpandAll", [&] {
        if (!m_ready)
            return;
        m_root->ExpandAll();
        Refresh();
    });
}

qint32 UserTree::ItemCount()
{
    return treeGuard("UserTree_ItemCount", qint32(0),
                     [&] { return m_ready ? m_root->NodesCount(false) : qint32(0); });
}

void UserTree::Requery(bool ignoreParents)
{
    treeGuard("UserTree_Requery", [&] {
        if (!m_ready)
            return;
        if (!ignoreParents)
            m_levels->CreateParentBuffers(true);
        m_root->Requery();
        Refresh();
    });
}

TreeItemP UserTree::SelectedItem()
{
    return treeGuard("UserTree_SelectedItem", TreeItemP(), [&]() -> TreeItemP {
        if (!m_ready)
            return nullptr;
        qint32 index = -1;
        std::shared_ptr<CSubTree> tree;
        return m_root->FindSelectedItem(index, tree) ? CTreeItem::Create(index, tree) : nullptr;
    });
}

TreeItemP UserTree::TreeItems(qint32 absoluteIndex)
{
    return treeGuard("UserTree_TreeItems", TreeItemP(), [&]() -> TreeItemP {
        return m_ready ? m_root->FindTreeItem(absoluteIndex) : nullptr;
    });
}

void UserTree::Synchronize(const cListItem& listItem)
{
    treeGuard("UserTree_Synchronize", [&] {
        if (!listItem.isEmpty())
            SelectItem(catalogue::ValueText(listItem.ParentKey), listItem.Level);
    });
}

bool UserTree::SelectItem(const QString& itemKey, int level)
{
    return treeGuard("UserTree_SelectItem", false, [&] {
        if (!m_ready)
            return false;
        if (level < 1 || level > kMaxSelectLevel)
            throw db::DbError(
                9, app::Translate(QStringLiteral("Index außerhalb des gültigen Bereichs")));
        // keys[n] is the key of the row at level n on the way down.
        std::array<QString, kMaxSelectLevel> keys;
        QString key = itemKey;
        for (int lv = level; lv >= 2; --lv) {
            const QString parent = m_levels->FindParentKey(key, lv);
            if (parent.isEmpty())
                return false;
            keys[size_t(lv - 1)] = parent;
            key = parent; // FindParentKey quoted the old one in place
        }
        QStringList path;
        for (int lv = 1; lv < level; ++lv)
            path << keys[size_t(lv)];
        std::shared_ptr<CSubTree> tree = m_root->CascadeExpand(path);
        Refresh();
        if (!tree)
            return false;
        const qint32 local = tree->FindLocalIndex(itemKey);
        if (local < 0)
            return false;
        tree->SelectItem(local);
        ActivateItem(CTreeItem::Create(local, tree));
        return true;
    });
}

// --- the current row, opening and closing --------------------------------------------------

void UserTree::ActivateItem(const TreeItemP& item)
{
    if (!item || !m_buffer)
        return;
    if (m_buffer->MakeSelection(item)) {
        viewport()->update();
        EnsureVisible(item);
        emit selectionChange();
    } else {
        EnsureVisible(item);
    }
}

bool UserTree::ToggleItem(const TreeItemP& item, int mode)
{
    if (!item || !m_ready || !item->IsParent())
        return false;
    const bool expanded = item->Expanded();
    const bool expand = mode == Toggle ? !expanded : mode == ExpandOnly;
    if (expand == expanded)
        return false;
    WaitCursor wait;
    if (expand) {
        ++m_expandDepth;
        emit beforeExpand();
        item->setExpanded(true);
        const bool opened = item->Expanded();
        if (opened)
            ensureRowsVisible(item->AbsoluteIndex(), item->SubItemCount() + 1);
        --m_expandDepth;
        emit afterExpand();
        return opened;
    }
    // The current row must not vanish with the rows below: the closing row takes its place.
    const qint32 at = item->AbsoluteIndex();
    const TreeItemP current = SelectedItem();
    const qint32 currentAt = current ? current->AbsoluteIndex() : -1;
    if (currentAt > at && currentAt <= at + item->SubItemCount()) {
        m_buffer->SelectedItem = current; // the buffer's may predate a requery
        ActivateItem(item);
    }
    item->setExpanded(false);
    return true;
}

void UserTree::moveTo(qint32 absoluteIndex)
{
    const qint32 last = ItemCount() - 1;
    ActivateItem(TreeItems(std::clamp(absoluteIndex, qint32(0), std::max(qint32(0), last))));
}

// --- scrolling -----------------------------------------------------------------------------

qint32 UserTree::TopRow() const
{
    return verticalScrollBar()->value();
}

int UserTree::VisibleRows() const
{
    return std::max(1, viewport()->height() / kRowHeight);
}

void UserTree::scrollTo(qint32 topRow)
{
    verticalScrollBar()->setValue(topRow); // the bar keeps it within the rows
}

void UserTree::EnsureVisible(const TreeItemP& item)
{
    treeGuard("UserTree_EnsureVisible", [&] {
        if (item && m_ready)
            ensureRowsVisible(item->AbsoluteIndex(), 1);
    });
}

void UserTree::ensureRowsVisible(qint32 first, qint32 count)
{
    AdjustScrollbar();
    const int rows = VisibleRows();
    qint32 top = TopRow();
    // The last row in view as far as they fit, but never the first one out of view.
    if (first + count > top + rows)
        top = std::min(first, first + count - rows);
    if (first < top)
        top = first;
    scrollTo(top);
}

void UserTree::scrollContentsBy(int, int)
{
    viewport()->update();
}

void UserTree::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    AdjustScrollbar();
}

// --- the root's events ---------------------------------------------------------------------

void UserTree::SelectionChange()
{
    treeGuard("UserTree_RootTree_SelectionChange", [&] {
        if (m_buffer)
            m_buffer->SelectedItem = SelectedItem();
    });
}

void UserTree::SubItemSelect(const TreeItemP& item)
{
    treeGuard("UserTree_RootTree_SubItemSelect", [&] { ActivateItem(item); });
}

CTreeLevels* UserTree::LevelInfo()
{
    return m_levels.get();
}

void UserTree::Redraw(int redrawMode)
{
    treeGuard("UserTree_RootTree_Redraw", [&] {
        // An expansion that ToggleItem started already stands between its own pair.
        const bool pair = redrawMode == 1 && m_expandDepth == 0;
        if (pair)
            emit beforeExpand();
        Refresh();
        if (pair)
            emit afterExpand();
    });
}

// --- keys ----------------------------------------------------------------------------------

void UserTree::keyPressEvent(QKeyEvent* event)
{
    const Qt::KeyboardModifiers mods = event->modifiers() & ~Qt::KeypadModifier;
    const int key = event->key();
    bool handled = false;
    treeGuard("UserTree_KeyDown", [&] {
        if (mods == Qt::NoModifier)
            handled = navigate(key);
        else if (mods == Qt::ControlModifier)
            handled = scrollByKey(key);
    });
    if (handled) {
        event->accept();
        return;
    }
    emit keydown(key, shiftCode(mods));
    event->ignore(); // the window may still want it
}

bool UserTree::navigate(int key)
{
    if (!m_ready)
        return false;
    const TreeItemP current = SelectedItem();
    if (current && m_buffer)
        m_buffer->SelectedItem = current;
    const qint32 at = current ? current->AbsoluteIndex() : 0;
    switch (key) {
    case Qt::Key_Down:
        ActivateItem(current ? current->NextItem() : TreeItems(0));
        return true;
    case Qt::Key_Up:
        if (current)
            ActivateItem(current->PrevItem());
        return true;
    case Qt::Key_Home:
        moveTo(0);
        return true;
    case Qt::Key_End:
        moveTo(ItemCount() - 1);
        return true;
    case Qt::Key_PageDown:
        moveTo(at + VisibleRows());
        return true;
    case Qt::Key_PageUp:
        moveTo(at - VisibleRows());
        return true;
    case Qt::Key_Plus:
        ToggleItem(current, ExpandOnly);
        return true;
    case Qt::Key_Minus:
        ToggleItem(current, CollapseOnly);
        return true;
    case Qt::Key_Right:
        if (current && !ToggleItem(current, ExpandOnly))
            ActivateItem(current->NextItem());
        return true;
    case Qt::Key_Left:
        if (current && !ToggleItem(current, CollapseOnly))
            ActivateItem(current->ParentItem());
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_dblClickOnReturn && current)
            emit itemDblClick();
        return true;
    default:
        return false;
    }
}

bool UserTree::scrollByKey(int key)
{
    QScrollBar* bar = verticalScrollBar();
    switch (key) {
    case Qt::Key_Up:
        scrollTo(TopRow() - 1);
        return true;
    case Qt::Key_Down:
        scrollTo(TopRow() + 1);
        return true;
    case Qt::Key_PageUp:
        scrollTo(TopRow() - VisibleRows());
        return true;
    case Qt::Key_PageDown:
        scrollTo(TopRow() + VisibleRows());
        return true;
    case Qt::Key_Home:
        scrollTo(bar->minimum());
        return true;
    case Qt::Key_End:
        scrollTo(bar->maximum());
        return true;
    case Qt::Key_Left:
        horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
        return true;
    case Qt::Key_Right:
        horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        return true;
    default:
        return false;
    }
}

// --- mouse ---------------------------------------------------------------------------------

int UserTree::Hittest(int x, int y, int* row)
{
    return treeGuard("UserTree_Hittest", int(NoZone), [&]() -> int {
        if (!m_ready || y < 0)
            return NoZone;
        fillBuffer();
        const int r = y / kRowHeight;
        if (r > m_buffer->MaxRow())
            return NoZone;
        if (row)
            *row = r;
        const TreeItemP item = m_buffer->Item(r);
        const int contentX = x + horizontalScrollBar()->value();
        const int w = levelWidth();
        const int left = (item->Level - 1) * w;
        if (contentX >= left && contentX <= left + w)
            return SignZone;
        const int textWidth =
            m_textSpacer + viewport()->fontMetrics().horizontalAdvance(rowText(item));
        if (contentX > left + w && contentX <= left + w + kIconSize + textWidth)
            return ItemZone;
        return NoZone;
    });
}

void UserTree::mousePressEvent(QMouseEvent* event)
{
    const QPoint at = event->position().toPoint();
    treeGuard("UserTree_Mousedown", [&] {
        int row = -1;
        const int zone = Hittest(at.x(), at.y(), &row);
        if (zone == ItemZone)
            ActivateItem(m_buffer->Item(row));
        else if (zone == SignZone)
            ToggleItem(m_buffer->Item(row), Toggle);
    });
    emit mouseDown(buttonCode(event->button()), shiftCode(event->modifiers()), at.x(), at.y());
}

void UserTree::mouseReleaseEvent(QMouseEvent* event)
{
    const QPoint at = event->position().toPoint();
    m_mouseUpAt = at;
    emit mouseUp(buttonCode(event->button()), shiftCode(event->modifiers()), at.x(), at.y());
}

void UserTree::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint at = event->position().toPoint();
    emit mouseMove(buttonCode(event->buttons()), shiftCode(event->modifiers()), at.x(), at.y());
}

void UserTree::mouseDoubleClickEvent(QMouseEvent*)
{
    // The second press of a double click is not a MouseDown: the row was made current by
    // the first, and the point is where the button last came up.
    if (Hittest(m_mouseUpAt.x(), m_mouseUpAt.y()) == ItemZone)
        emit itemDblClick();
}

void UserTree::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void UserTree::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

// --- painting ------------------------------------------------------------------------------

void UserTree::fillBuffer()
{
    const int rows = (viewport()->height() + kRowHeight - 1) / kRowHeight;
    m_buffer->Fill(m_root, TopRow(), std::max(1, rows));
}

void UserTree::paintEvent(QPaintEvent*)
{
    QPainter p(viewport());
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    p.fillRect(viewport()->rect(), palette().color(group, QPalette::Base));
    if (!m_ready)
        return;
    m_lineColors = {palette().color(group, QPalette::Mid), palette().color(group, QPalette::Dark),
                    palette().color(group, QPalette::Base), palette().color(group, QPalette::Text)};
    const int widest = m_widest;
    treeGuard("UserTree_PaintTheControl", [&] {
        fillBuffer();
        if (m_buffer->Count() == 0)
            return;
        FillLevelPicBuffer();
        p.translate(-horizontalScrollBar()->value(), 0);
        for (int row = 0; row < m_buffer->Count(); ++row)
            Paintitem(p, m_buffer->Item(row), row);
    });
    if (m_widest != widest) // the bar may change the viewport: not from inside a paint
        QMetaObject::invokeMethod(this, &UserTree::AdjustScrollbar, Qt::QueuedConnection);
}

void UserTree::FillLevelPicBuffer()
{
    treeGuard("UserTree_FillLevelPicBuffer", [&] {
        m_levelPics.fill(0);
        // Each ancestor of the top row that has a sibling below continues its line down.
        for (TreeItemP a = m_buffer->Item(0)->ParentItem(); a; a = a->ParentItem())
            if (a->Level >= 1 && a->Level <= kMaxDrawLevels && !a->IsLastItem())
                m_levelPics[size_t(a->Level - 1)] = treeline::kHorizontal;
    });
}

void UserTree::Paintitem(QPainter& p, const TreeItemP& item, int bufferRow)
{
    treeGuard("UserTree_Paintitem", [&] {
        const int level = item->Level;
        if (level < 1 || level > kMaxDrawLevels)
            return;
        const int icon = item->TreeLineIcon();
        m_levelPics[size_t(level - 1)] = quint8(icon);
        const int w = levelWidth();
        const int x = (level - 1) * w;
        const int y = bufferRow * kRowHeight;
        for (int j = 0; j < level - 1; ++j) {
            quint8& entry = m_levelPics[size_t(j)];
            if (entry >= 7 && entry <= 12) {
                entry = 0; // a last row: its column ends there
            } else if (entry != 0) {
                DrawTreeLine(p, treeline::kVertical, QPoint(j * w, y), m_lineColors);
                entry = treeline::kHorizontal;
            }
        }
        if (icon >= 1)
            DrawTreeLine(p, icon - 1, QPoint(x, y), m_lineColors);
        for (int i = 1; i <= m_indentation; ++i)
            DrawTreeLine(p, treeline::kHorizontal, QPoint(x + i * 16, y), m_lineColors);
        int textX = x + w;
        if (m_style == 1) {
            if (const QIcon* i = iconFor(item))
                i->paint(&p, QRect(textX, y, kIconSize, kIconSize));
            textX += kIconSize;
        }
        m_widest = std::max(m_widest, Painttext(p, item, textX, y));
        item->setRedrawFlag(false);
    });
}

const QIcon* UserTree::iconFor(const TreeItemP& item)
{
    qint16 icon = item->Icon;
    if (m_translateIcons)
        emit translateIcon(icon, item->Level);
    const QVector<QIcon>& list =
        item->Expanded() && !m_expandedIcons.isEmpty() ? m_expandedIcons : m_standardIcons;
    return icon >= 1 && icon <= list.size() ? &list[icon - 1] : nullptr;
}

QString UserTree::rowText(const TreeItemP& item) const
{
    // Only the first line: a caption from a memo may hold line breaks.
    const QString& caption = item->Caption;
    qsizetype end = caption.indexOf(QLatin1Char('\r'));
    const qsizetype lf = caption.indexOf(QLatin1Char('\n'));
    if (lf >= 0 && (end < 0 || lf < end))
        end = lf;
    return QLatin1Char(' ') + (end < 0 ? caption : caption.left(end)) + QLatin1Char(' ');
}

int UserTree::Painttext(QPainter& p, const TreeItemP& item, int x, int y)
{
    return treeGuard("UserTree_Painttext", x, [&] {
        const QString text = rowText(item);
        x += m_textSpacer;
        const QRect r(x, y, p.fontMetrics().horizontalAdvance(text), kRowHeight);
        const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
        QColor ink = palette().color(group, QPalette::Text);
        const bool selected = item->Selected();
        const bool focused = hasFocus();
        if (selected && focused) {
            p.fillRect(r, palette().color(group, QPalette::Highlight));
            ink = palette().color(group, QPalette::HighlightedText);
        } else if (selected && !m_hideSelection) {
            p.fillRect(r, palette().color(group, QPalette::Dark));
            ink = palette().color(group, QPalette::HighlightedText);
        }
        p.setPen(ink);
        p.drawText(r, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
        if (selected && focused) {
            QStyleOptionFocusRect focus;
            focus.initFrom(this);
            focus.rect = r;
            focus.backgroundColor = palette().color(group, QPalette::Highlight);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &p, this);
        }
        return r.right() + 1;
    });
}

} // namespace vd::controls
