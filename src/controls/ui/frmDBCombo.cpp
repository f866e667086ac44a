#include "controls/ui/frmDBCombo.h"

#include "app/Translate.h"
#include "controls/ui/SimpleReport.h"

#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>

namespace vd::controls {

frmDBCombo::frmDBCombo(QWidget* owner)
    : QWidget(owner, Qt::Tool | Qt::FramelessWindowHint), m_list(new SimpleReport(this))
{
    setObjectName(QStringLiteral("frmDBCombo"));
    // The field keeps the keyboard: typing goes on while the list is open.
    setAttribute(Qt::WA_ShowWithoutActivating);
    m_list->setObjectName(QStringLiteral("srpCombo"));
    m_list->setFocusPolicy(Qt::NoFocus);
    ReportProperties& p = m_list->props();
    p.ShowContextMenu = false; // the right button opens the drop-down's own header menu
    p.SortMode = 0;
    p.DblClickOnReturn = false;
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);

    connect(m_list, &SimpleReport::itemClick, this, [this](qint64 row, int button, int) {
        if (button == ReportEngine::LeftButton)
            emit rowChosen(row);
    });
    connect(m_list, &SimpleReport::columnClick, this, [this](int column, int button, int) {
        if (button != ReportEngine::LeftButton)
            headerMenu(column);
    });
    m_menuRunner = [](QMenu& menu) { return menu.exec(QCursor::pos()); };
    hide();
}

frmDBCombo::~frmDBCombo()
{
    if (m_filtering)
        qApp->removeEventFilter(this);
}

void frmDBCombo::showAt(const QRect& field, int rows)
{
    const qint64 count = m_list->ItemCount();
    const int shown = int(std::clamp<qint64>(count, 1, std::max(1, rows)));
    const QHeaderView* header = m_list->horizontalHeader();
    const int frame = 2 * m_list->frameWidth();
    int width = frame;
    for (int c = 0; c < header->count(); ++c)
        if (!header->isSectionHidden(c))
            width += header->sectionSize(c);
    if (count > shown)
        width += m_list->verticalScrollBar()->sizeHint().width();
    width = std::max(width, field.width());
    const int height = frame + header->sizeHint().height() +
                       shown * m_list->verticalHeader()->defaultSectionSize();

    const QScreen* screen = QGuiApplication::screenAt(field.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect room =
        screen ? screen->availableGeometry() : QRect(field.topLeft(), QSize(4096, 4096));
    width = std::min(width, room.width());
    QPoint at(field.left(), field.bottom() + 1);
    if (at.y() + height > room.bottom() && field.top() - height >= room.top())
        at.setY(field.top() - height);
    at.setX(std::clamp(at.x(), room.left(), std::max(room.left(), room.right() - width + 1)));
    setGeometry(QRect(at, QSize(width, height)));

    m_closedOn = nullptr;
    if (!m_filtering) {
        qApp->installEventFilter(this);
        m_filtering = true;
    }
    show();
    if (m_list->SelectedIndex() >= 0)
        m_list->scrollTo(m_list->model()->index(int(m_list->SelectedIndex()), 0));
}

void frmDBCombo::closeDropDown()
{
    if (isVisible())
        hide();
}

void frmDBCombo::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!m_filtering)
        return;
    qApp->removeEventFilter(this);
    m_filtering = false;
    emit closed();
}

bool frmDBCombo::closedByPressOn(const QWidget* widget)
{
    const bool hit = widget && m_closedOn == widget;
    m_closedOn = nullptr;
    return hit;
}

bool frmDBCombo::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::NonClientAreaMouseButtonPress: {
        auto* w = qobject_cast<QWidget*>(watched);
        // A click inside (the list, its header menu) goes on as it is.
        if (!w || !isVisible() || w == this || isAncestorOf(w))
            break;
        m_closedOn = w;
        closeDropDown();
        break; // the click still reaches its window
    }
    case QEvent::ApplicationDeactivate:
        closeDropDown();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

int frmDBCombo::neighbourColumn(int column, int step) const
{
    const ReportColumns& cols = m_list->engine().Columns();
    QList<int> visible;
    for (int c : cols.displayOrder())
        if (cols[c].hidden == 0)
            visible << c;
    const int at = int(visible.indexOf(column));
    const int want = at + step;
    return at >= 0 && want >= 0 && want < visible.size() ? visible[want] : -1;
}

void frmDBCombo::headerMenu(int column)
{
    QMenu menu(this);
    auto add = [&menu](const char* name, const char* text) {
        QAction* a = menu.addAction(app::Translate(QString::fromUtf8(text)));
        a->setObjectName(QLatin1String(name));
        return a;
    };
    const int next = neighbourColumn(column, 1);
    const int prev = neighbourColumn(column, -1);
    add("mnuPopupColSize", "&Spaltenbreiten optimieren");
    menu.addSeparator();
    add("mnuPopupSortThisCol", "Nach &dieser Spalte sortieren");
    add("mnuPopupSortNextCol", "Nach &nächster Spalte sortieren")->setEnabled(next >= 0);
    add("mnuPopupSortPrevCol", "Nach &vorheriger Spalte sortieren")->setEnabled(prev >= 0);
    QAction* chosen = m_menuRunner(menu);
    if (!chosen || !chosen->isEnabled())
        return;
    const QString name = chosen->objectName();
    ReportEngine& engine = m_list->engine();
    if (name == QLatin1String("mnuPopupColSize"))
        engine.AutoSizeColumns(QVariant());
    else if (name == QLatin1String("mnuPopupSortThisCol"))
        engine.Resort(column, true);
    else if (name == QLatin1String("mnuPopupSortNextCol"))
        engine.Resort(next, true);
    else if (name == QLatin1String("mnuPopupSortPrevCol"))
        engine.Resort(prev, true);
}

} // namespace vd::controls
