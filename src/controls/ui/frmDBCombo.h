#pragma once
// The drop-down of the database combo box: a borderless window with the list srpCombo, shown
// under the field. While it is open an application-wide event filter watches every click: one
// on any window that is not the drop-down or one of its children closes it (and lets the click
// through); switching to another program closes it too.

#include <functional>
#include <QWidget>

class QAction;
class QMenu;

namespace vd::controls {

class SimpleReport;

class frmDBCombo : public QWidget
{
    Q_OBJECT
public:
    explicit frmDBCombo(QWidget* owner);
    ~frmDBCombo() override;

    SimpleReport* srpCombo() const { return m_list; }

    // Opens under (or, without room, above) the field's rectangle in global coordinates,
    // sized for at most `rows` rows and at least the field's width.
    void showAt(const QRect& field, int rows);
    // Closes; `closed` tells the owner.
    void closeDropDown();
    // Whether the last close came from a press on this widget (the owner's arrow), so that
    // the click that closed it does not open it again.
    bool closedByPressOn(const QWidget* widget);

    // The header menu's runner; tests choose without a popup.
    void setMenuRunner(std::function<QAction*(QMenu&)> runner) { m_menuRunner = std::move(runner); }

signals:
    void rowChosen(qint64 row);
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void headerMenu(int column);
    int neighbourColumn(int column, int step) const;

    SimpleReport* m_list;
    std::function<QAction*(QMenu&)> m_menuRunner;
    const QWidget* m_closedOn = nullptr;
    bool m_filtering = false;
};

} // namespace vd::controls
