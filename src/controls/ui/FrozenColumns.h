#pragma once
// The frozen columns of a list: a second table view over the same model and selection, laid
// over the left edge of the list and showing only the columns fixed there. The list keeps
// those columns first in its own order; when it scrolls sideways its other columns slide
// under this view, which stays, and both scroll up and down in step.

#include <QTableView>

namespace vd::controls {

class FrozenColumnView : public QTableView
{
    Q_OBJECT
public:
    explicit FrozenColumnView(QTableView* main);

    // Shows these columns of the model (the fixed and visible ones), with the list's widths.
    void setFrozen(const QList<int>& columns);
    const QList<int>& frozenColumns() const { return m_columns; }
    bool isFrozen(int column) const { return m_columns.contains(column); }
    // The width the frozen columns take in the list.
    int frozenWidth() const;
    // Lays the view over the list's left edge, header included; hides it when nothing is
    // frozen.
    void place();

signals:
    void cellPressed(const QModelIndex& index, Qt::MouseButton button,
                     Qt::KeyboardModifiers modifiers);
    void cellDoubleClicked(const QModelIndex& index);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QTableView* m_main;
    QList<int> m_columns;
};

} // namespace vd::controls
