#pragma once
// The tree's connector pictures, drawn with rectangles snapped to device pixels so that they
// stay one clean pixel wide at any device pixel ratio (1, 1.25, 1.5, 2 ...), where painted
// bitmaps or lines at logical coordinates would blur.

#include <QColor>
#include <QPoint>

class QPainter;

namespace vd::controls {

// The pictures by their 0-based index: 0 to 11 are the connector numbers 1 to 12 of a row
// (first, middle, last, only row; each as leaf, closed, open), then the vertical line that
// continues an ancestor's column and the horizontal extension of a wider indentation.
namespace treeline {
constexpr int kCell = 16; // logical pixels, square
constexpr int kVertical = 12;
constexpr int kHorizontal = 13;
constexpr int kCount = 14;
} // namespace treeline

struct TreeLineColors
{
    QColor line; // the connector lines
    QColor box;  // the frame of the plus and minus box
    QColor fill; // inside the box
    QColor sign; // the plus or minus itself
};

// Draws picture `index` into the cell whose top left corner is `topLeft` (logical
// coordinates of the painter, which may be translated and scaled but not rotated).
void DrawTreeLine(QPainter& p, int index, QPoint topLeft, const TreeLineColors& colors);

} // namespace vd::controls
