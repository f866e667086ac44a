#include "controls/ui/CAQSplit.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPalette>

namespace vd::controls {

namespace {

QColor colorFrom(const QVariantMap& bag, const char* key, const QColor& fallback)
{
    const QVariant v = bag.value(QLatin1String(key));
    if (!v.isValid())
        return fallback;
    if (v.canConvert<QColor>() && v.value<QColor>().isValid())
        return v.value<QColor>();
    // A stored colour number is 0x00BBGGRR.
    bool ok = false;
    const uint n = v.toUInt(&ok);
    return ok ? QColor(int(n & 0xFF), int((n >> 8) & 0xFF), int((n >> 16) & 0xFF)) : fallback;
}

int intFrom(const QVariantMap& bag, const char* key, int fallback)
{
    bool ok = false;
    const int n = bag.value(QLatin1String(key)).toInt(&ok);
    return ok ? n : fallback;
}

double doubleFrom(const QVariantMap& bag, const char* key, double fallback)
{
    bool ok = false;
    const double n = bag.value(QLatin1String(key)).toDouble(&ok);
    return ok ? n : fallback;
}

uint colorNumber(const QColor& c)
{
    return uint(c.red()) | (uint(c.green()) << 8) | (uint(c.blue()) << 16);
}

bool isEmptyPos(const QVariant& v)
{
    return v.isNull() || !v.isValid() || v.toString().isEmpty();
}

} // namespace

double ClampSplitPos(double wanted, double total, double marginA, double marginB, double splitSize)
{
    const double pos = std::max(marginA, wanted);
    return std::min(pos, total - marginB - splitSize);
}

// CAQSimpleContainer

CAQSimpleContainer::CAQSimpleContainer(QWidget* parent)
    : QWidget(parent), m_backColor(palette().color(QPalette::Button)),
      m_foreColor(palette().color(QPalette::ButtonText))
{}

void CAQSimpleContainer::setBackColor(const QColor& color)
{
    m_backColor = color;
    update();
}

void CAQSimpleContainer::ReadProperties(const QVariantMap& bag)
{
    setBackColor(colorFrom(bag, "BackColor", palette().color(QPalette::Button)));
    m_foreColor = colorFrom(bag, "ForeColor", palette().color(QPalette::ButtonText));
    m_backStyle = intFrom(bag, "BackStyle", 1);
}

QVariantMap CAQSimpleContainer::WriteProperties() const
{
    return {{QStringLiteral("BackColor"), colorNumber(m_backColor)},
            {QStringLiteral("ForeColor"), colorNumber(m_foreColor)},
            {QStringLiteral("BackStyle"), m_backStyle}};
}

void CAQSimpleContainer::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), m_backColor);
}

// CAQSplit

CAQSplit::CAQSplit(QWidget* parent)
    : QWidget(parent), m_backColor(palette().color(QPalette::Button)),
      m_foreColor(palette().color(QPalette::ButtonText))
{
    setCursor(Qt::SplitHCursor);
}

void CAQSplit::Arrange(QWidget* first, QWidget* second)
{
    m_first = first;
    m_second = second;
    m_firstName = first ? first->objectName() : QString();
    m_secondName = second ? second->objectName() : QString();
    for (QWidget* w : {first, second}) {
        if (w && w->parentWidget() != this)
            w->setParent(this);
        if (w)
            w->show();
    }
    layoutPanes();
}

QVariant CAQSplit::SplitPos() const
{
    return m_splitPos;
}

void CAQSplit::setSplitPos(const QVariant& twips)
{
    if (isEmptyPos(twips))
        m_splitPos = QVariant();
    else
        m_splitPos = clamp(twips.toDouble());
    layoutPanes();
}

void CAQSplit::setBackColor(const QColor& color)
{
    m_backColor = color;
    update();
}

void CAQSplit::setBorderStyle(int style)
{
    m_borderStyle = style;
    layoutPanes();
}

void CAQSplit::setSplitStyle(int style)
{
    m_splitStyle = style;
    setCursor(style == 0 ? Qt::SplitHCursor : Qt::SplitVCursor);
    layoutPanes();
}

void CAQSplit::setSplitSize(int twips)
{
    m_splitSize = std::max(0, twips);
    layoutPanes();
}

void CAQSplit::setMarginA(double twips)
{
    m_marginA = twips;
    layoutPanes();
}

void CAQSplit::setMarginB(double twips)
{
    m_marginB = twips;
    layoutPanes();
}

void CAQSplit::Refresh()
{
    layoutPanes();
    update();
}

void CAQSplit::ReadProperties(const QVariantMap& bag)
{
    m_backColor = colorFrom(bag, "BackColor", palette().color(QPalette::Button));
    m_foreColor = colorFrom(bag, "ForeColor", palette().color(QPalette::ButtonText));
    m_backStyle = intFrom(bag, "BackStyle", 1);
    m_borderStyle = intFrom(bag, "BorderStyle", 0);
    m_splitSize = std::max(0, intFrom(bag, "SplitSize", 80));
    m_marginA = doubleFrom(bag, "MarginA", 0);
    m_marginB = doubleFrom(bag, "MarginB", 0);
    setSplitStyle(intFrom(bag, "SplitStyle", 0));
    setSplitPos(bag.value(QStringLiteral("SplitPos")));
}

QVariantMap CAQSplit::WriteProperties() const
{
    return {{QStringLiteral("BackColor"), colorNumber(m_backColor)},
            {QStringLiteral("ForeColor"), colorNumber(m_foreColor)},
            {QStringLiteral("BackStyle"), m_backStyle},
            {QStringLiteral("BorderStyle"), m_borderStyle},
            {QStringLiteral("SplitStyle"), m_splitStyle},
            {QStringLiteral("SplitSize"), m_splitSize},
            {QStringLiteral("MarginA"), m_marginA},
            {QStringLiteral("MarginB"), m_marginB},
            {QStringLiteral("SplitPos"), m_splitPos}};
}

double CAQSplit::totalExtent() const
{
    return (m_splitStyle == 0 ? width() : height()) * kTwipsPerPixel;
}

double CAQSplit::clamp(double wanted) const
{
    return ClampSplitPos(wanted, totalExtent(), m_marginA, m_marginB, m_splitSize);
}

QRect CAQSplit::barAt(double twips) const
{
    const int pos = qRound(twips / kTwipsPerPixel);
    const int size = qRound(m_splitSize / kTwipsPerPixel);
    return m_splitStyle == 0 ? QRect(pos, 0, size, height()) : QRect(0, pos, width(), size);
}

QRect CAQSplit::barRect() const
{
    const double pos =
        m_splitPos.isNull() ? (totalExtent() - m_splitSize) / 2 : clamp(m_splitPos.toDouble());
    return barAt(pos);
}

QRect CAQSplit::ghostRect() const
{
    return m_ghost && m_ghost->isVisible() ? m_ghost->geometry() : QRect();
}

QWidget* CAQSplit::pane(const QString& name, QWidget* given) const
{
    if (!name.isEmpty())
        if (auto* w = findChild<QWidget*>(name, Qt::FindDirectChildrenOnly))
            return w;
    return given;
}

void CAQSplit::layoutPanes()
{
    if (!m_splitPos.isNull())
        m_splitPos = clamp(m_splitPos.toDouble());
    const QRect bar = barRect();
    QRect a;
    QRect b;
    if (m_splitStyle == 0) {
        a = QRect(0, 0, std::max(0, bar.left()), height());
        b = QRect(bar.right() + 1, 0, std::max(0, width() - bar.right() - 1), height());
    } else {
        a = QRect(0, 0, width(), std::max(0, bar.top()));
        b = QRect(0, bar.bottom() + 1, width(), std::max(0, height() - bar.bottom() - 1));
    }
    if (QWidget* w = pane(m_firstName, m_first))
        w->setGeometry(a);
    if (QWidget* w = pane(m_secondName, m_second))
        w->setGeometry(b);
    update();
    emit SplitResize();
}

void CAQSplit::resizeEvent(QResizeEvent*)
{
    layoutPanes();
}

void CAQSplit::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), m_backColor);
    if (m_borderStyle != 0) {
        p.setPen(palette().color(QPalette::Mid));
        p.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

double CAQSplit::along(const QPointF& p) const
{
    return (m_splitStyle == 0 ? p.x() : p.y()) * kTwipsPerPixel;
}

void CAQSplit::drawGhost(double twips)
{
    if (!m_ghost) {
        m_ghost = new QWidget(this);
        m_ghost->setAttribute(Qt::WA_TransparentForMouseEvents);
        m_ghost->setAutoFillBackground(true);
    }
    // Inverted colours of the bar.
    QPalette pal = m_ghost->palette();
    pal.setColor(QPalette::Window, QColor(255 - m_backColor.red(), 255 - m_backColor.green(),
                                          255 - m_backColor.blue()));
    m_ghost->setPalette(pal);
    if (m_lastDrawn >= 0) {
        m_ghost->hide(); // erase the old one
        ++m_ghostDraws;
    }
    m_ghost->setGeometry(barAt(twips));
    m_ghost->raise();
    m_ghost->show();
    ++m_ghostDraws;
    m_lastDrawn = twips;
}

void CAQSplit::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_dragging = true;
    m_lastDrawn = -1;
    m_ghostDraws = 0;
    m_startPoint = along(event->position());
    m_startPos = m_splitPos.isNull() ? (totalExtent() - m_splitSize) / 2 : m_splitPos.toDouble();
}

void CAQSplit::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging || !(event->buttons() & Qt::LeftButton))
        return;
    drawGhost(clamp(m_startPos + along(event->position()) - m_startPoint));
}

void CAQSplit::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_dragging || event->button() != Qt::LeftButton)
        return;
    m_dragging = false;
    if (m_lastDrawn >= 0) {
        if (m_ghost)
            m_ghost->hide();
        ++m_ghostDraws;
        m_splitPos = m_lastDrawn;
    }
    m_lastDrawn = -1;
    layoutPanes();
    emit SplitChange();
}

} // namespace vd::controls
