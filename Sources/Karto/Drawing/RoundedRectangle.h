#pragma once
// Rectangles whose corners bend gradually, without a visible joint between line and curve.

#include <QPainterPath>
#include <QRectF>

namespace karto::drawing {

// The corners cut off as much as arcs of that radius would; a smaller radius where there is no room.
QPainterPath roundedRectangle(const QRectF& area, double radius);

// What lies between two distances from the edge of that rectangle, inside it.
QPainterPath ring(const QRectF& area, double radius, double from, double to);

// How far from a corner its curve begins, at most.
double cornerReach(double radius);

} // namespace karto::drawing
