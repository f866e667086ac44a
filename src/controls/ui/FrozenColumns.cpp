#include "controls/ui/FrozenColumns.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>

namespace vd::controls {

FrozenColumnView::FrozenColumnView(QTableView* main) : QTableView(main), m_main(main)
{
    setModel(main->model());
    setSelectionModel(main->selectionModel());
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionsMovable(false);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setHighlightSections(false);
    // Up and down in step with the list, whichever of the two is scrolled.
    connect(main->verticalScrollBar(), &QScrollBar::valueChanged, verticalScrollBar(),
            &QScrollBar::setValue);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, main->verticalScrollBar(),
            &QScrollBar::setValue);
    hide();
}

void FrozenColumnView::setFrozen(const QList<int>& columns)
{
    m_columns = columns;
    const int n = model() ? model()->columnCount() : 0;
    for (int c = 0; c < n; ++c) {
        setColumnHidden(c, !columns.contains(c));
        if (columns.contains(c))
            setColumnWidth(c, m_main->columnWidth(c));
    }
    // The same order as in the list.
    QList<int> byPosition = columns;
    std::sort(byPosition.begin(), byPosition.end(), [this](int a, int b) {
        return m_main->horizontalHeader()->visualIndex(a) <
               m_main->horizontalHeader()->visualIndex(b);
    });
    for (int pos = 0; pos < byPosition.size(); ++pos)
        horizontalHeader()->moveSection(horizontalHeader()->visualIndex(byPosition[pos]), pos);
    setShowGrid(m_main->showGrid());
    place();
}

int FrozenColumnView::frozenWidth() const
{
    int width = 0;
    for (int c : m_columns)
        width += m_main->columnWidth(c);
    return width;
}

void FrozenColumnView::place()
{
    if (m_columns.isEmpty()) {
        hide();
        return;
    }
    const int frame = m_main->frameWidth();
    const QHeaderView* rows = m_main->verticalHeader();
    const QHeaderView* header = m_main->horizontalHeader();
    const int headerHeight = header->isVisible() ? header->height() : 0;
    horizontalHeader()->setVisible(header->isVisible());
    horizontalHeader()->setFixedHeight(headerHeight);
    verticalHeader()->setDefaultSectionSize(rows->defaultSectionSize());
    setGeometry(frame + (rows->isVisible() ? rows->width() : 0), frame, frozenWidth(),
                m_main->viewport()->height() + headerHeight);
    show();
    raise();
    verticalScrollBar()->setValue(m_main->verticalScrollBar()->value());
}

void FrozenColumnView::mousePressEvent(QMouseEvent* event)
{
    QTableView::mousePressEvent(event);
    m_main->setFocus(Qt::MouseFocusReason);
    const QModelIndex i = indexAt(event->position().toPoint());
    if (i.isValid())
        emit cellPressed(i, event->button(), event->modifiers());
}

void FrozenColumnView::mouseDoubleClickEvent(QMouseEvent* event)
{
    QTableView::mouseDoubleClickEvent(event);
    const QModelIndex i = indexAt(event->position().toPoint());
    if (i.isValid())
        emit cellDoubleClicked(i);
}

} // namespace vd::controls
