#pragma once
// The containers of the main windows: CAQSimpleContainer, a plain coloured panel, and CAQSplit,
// two panes with a bar between them that the user drags. Sizes are kept in twips, as the
// settings store them (15 twips to a logical pixel).

#include <QColor>
#include <QPointer>
#include <QVariant>
#include <QVariantMap>
#include <QWidget>

namespace vd::controls {

constexpr double kTwipsPerPixel = 15.0;

// Where the bar may lie: at least `marginA`, then at most `total - marginB - splitSize`. The
// second rule wins, so in a container too small for both margins the bar lies below `marginA`.
double ClampSplitPos(double wanted, double total, double marginA, double marginB, double splitSize);

class CAQSimpleContainer : public QWidget
{
    Q_OBJECT
public:
    explicit CAQSimpleContainer(QWidget* parent = nullptr);

    QColor BackColor() const { return m_backColor; }
    void setBackColor(const QColor& color);
    QColor ForeColor() const { return m_foreColor; }
    void setForeColor(const QColor& color) { m_foreColor = color; }
    int BackStyle() const { return m_backStyle; }
    void setBackStyle(int style) { m_backStyle = style; }
    void Refresh() { update(); }

    void ReadProperties(const QVariantMap& bag);
    QVariantMap WriteProperties() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_backColor;
    QColor m_foreColor;
    int m_backStyle = 1;
};

class CAQSplit : public QWidget
{
    Q_OBJECT
public:
    explicit CAQSplit(QWidget* parent = nullptr);

    // The two child controls; their object names are kept and the panes laid out.
    void Arrange(QWidget* first, QWidget* second);

    // Null (or an empty text) means centred.
    QVariant SplitPos() const;
    void setSplitPos(const QVariant& twips);

    QColor BackColor() const { return m_backColor; }
    void setBackColor(const QColor& color);
    QColor ForeColor() const { return m_foreColor; }
    void setForeColor(const QColor& color) { m_foreColor = color; }
    int BackStyle() const { return m_backStyle; }
    void setBackStyle(int style) { m_backStyle = style; }
    int BorderStyle() const { return m_borderStyle; }
    void setBorderStyle(int style);
    int SplitStyle() const { return m_splitStyle; }
    void setSplitStyle(int style);
    int SplitSize() const { return m_splitSize; }
    void setSplitSize(int twips);
    double MarginA() const { return m_marginA; }
    void setMarginA(double twips);
    double MarginB() const { return m_marginB; }
    void setMarginB(double twips);

    void Refresh();
    void Redraw() { Refresh(); }

    void ReadProperties(const QVariantMap& bag);
    QVariantMap WriteProperties() const;

    // The bar as it lies now, in pixels; and the ghost bar while dragging (empty when none).
    QRect barRect() const;
    QRect ghostRect() const;
    bool dragging() const { return m_dragging; }
    // How often a ghost bar was drawn or erased since the last button down.
    int ghostDraws() const { return m_ghostDraws; }

signals:
    void SplitChange();
    void SplitResize();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    double totalExtent() const; // twips along the bar's axis
    double clamp(double wanted) const;
    QRect barAt(double twips) const;
    void layoutPanes();
    void drawGhost(double twips);
    QWidget* pane(const QString& name, QWidget* given) const;
    double along(const QPointF& p) const;

    QColor m_backColor;
    QColor m_foreColor;
    int m_backStyle = 1;
    int m_borderStyle = 0;
    int m_splitStyle = 0;
    int m_splitSize = 80;
    double m_marginA = 0;
    double m_marginB = 0;
    QVariant m_splitPos;
    QString m_firstName;
    QString m_secondName;
    QPointer<QWidget> m_first;
    QPointer<QWidget> m_second;

    bool m_dragging = false;
    double m_startPoint = 0;
    double m_startPos = 0;
    double m_lastDrawn = -1;
    int m_ghostDraws = 0;
    QPointer<QWidget> m_ghost;
};

} // namespace vd::controls
