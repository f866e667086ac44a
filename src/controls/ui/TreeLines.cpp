#include "controls/ui/TreeLines.h"

#include <cmath>
#include <QPainter>
#include <QTransform>

namespace vd::controls {

namespace {

// The cell in device pixels, with the line width and the centre column and row, so that the
// lines of neighbouring cells meet without a gap at any scale.
struct DeviceCell
{
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0; // [x0, x1) x [y0, y1)
    int lw = 1;                         // line width
    int cx = 0, cy = 0;                 // left / top of the centre lines
    int half = 4;                       // half the box, without the line
};

DeviceCell deviceCell(const QTransform& t, QPoint topLeft)
{
    const QRectF r = t.mapRect(QRectF(topLeft, QSizeF(treeline::kCell, treeline::kCell)));
    const double scale = r.width() / treeline::kCell;
    DeviceCell c;
    c.x0 = int(std::lround(r.left()));
    c.y0 = int(std::lround(r.top()));
    c.x1 = int(std::lround(r.right()));
    c.y1 = int(std::lround(r.bottom()));
    c.lw = std::max(1, int(std::floor(scale)));
    // The line covers the logical pixel [8, 9) of the cell, as on a plain screen.
    c.cx = c.x0 + int(std::lround(8 * scale));
    c.cy = c.y0 + int(std::lround(8 * scale));
    c.half = std::max(2, int(std::lround(4 * scale)));
    return c;
}

void drawBox(QPainter& p, const DeviceCell& c, bool plus, const TreeLineColors& colors)
{
    // Side 2 * half + lw, so that the sign sits exactly in the middle of it.
    const int side = 2 * c.half + c.lw;
    const QRect outer(c.cx - c.half, c.cy - c.half, side, side);
    p.fillRect(outer, colors.box);
    p.fillRect(outer.adjusted(c.lw, c.lw, -c.lw, -c.lw), colors.fill);
    const int pad = c.lw + std::max(1, c.half / 4);
    p.fillRect(QRect(outer.left() + pad, c.cy, side - 2 * pad, c.lw), colors.sign);
    if (plus)
        p.fillRect(QRect(c.cx, outer.top() + pad, c.lw, side - 2 * pad), colors.sign);
}

} // namespace

void DrawTreeLine(QPainter& p, int index, QPoint topLeft, const TreeLineColors& colors)
{
    if (index < 0 || index >= treeline::kCount)
        return;
    // The cell in device pixels through everything the painter applies; then, with the
    // painter's own transforms reset, whatever still stands between logical and device
    // pixels (the screen's scale, a redirection offset) is undone, so that the rectangles
    // below land on whole device pixels.
    const DeviceCell c = deviceCell(p.deviceTransform(), topLeft);
    p.save();
    p.resetTransform();
    p.setWorldTransform(p.deviceTransform().inverted());
    p.setRenderHint(QPainter::Antialiasing, false);
    const QColor& line = colors.line;
    if (index == treeline::kVertical) {
        p.fillRect(QRect(c.cx, c.y0, c.lw, c.y1 - c.y0), line);
    } else if (index == treeline::kHorizontal) {
        p.fillRect(QRect(c.x0, c.cy, c.x1 - c.x0, c.lw), line);
    } else {
        const int kind = index / 3; // 0 first, 1 middle, 2 last, 3 only row
        const int sign = index % 3; // 0 none, 1 plus, 2 minus
        const bool up = kind == 1 || kind == 2;
        const bool down = kind == 0 || kind == 1;
        if (up)
            p.fillRect(QRect(c.cx, c.y0, c.lw, c.cy + c.lw - c.y0), line);
        if (down)
            p.fillRect(QRect(c.cx, c.cy, c.lw, c.y1 - c.cy), line);
        p.fillRect(QRect(c.cx, c.cy, c.x1 - c.cx, c.lw), line);
        if (sign != 0)
            drawBox(p, c, sign == 1, colors);
    }
    p.restore();
}

} // namespace vd::controls
