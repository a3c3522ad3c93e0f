#include "Karto/Drawing/RoundedRectangle.h"

#include <algorithm>

namespace karto::drawing {

namespace {

// With these a cubic curve is close to a superellipse of exponent 3: hardly bent where it meets the line,
// and as deep as an arc at its middle.
constexpr double reachOfRadius = 1.42;
constexpr double handleOfReach = 0.783;

QRectF inset(const QRectF& area, double distance) {
    return area.adjusted(distance, distance, -distance, -distance);
}

} // namespace

double cornerReach(double radius) { return radius * reachOfRadius; }

QPainterPath roundedRectangle(const QRectF& area, double radius) {
    const double reach = std::clamp(cornerReach(radius), 0.0, std::min(area.width(), area.height()) / 2);
    const double rest = reach * (1 - handleOfReach);
    const double left = area.left();
    const double top = area.top();
    const double right = area.right();
    const double bottom = area.bottom();

    QPainterPath path(QPointF(left + reach, top));
    path.lineTo(right - reach, top);
    path.cubicTo(right - rest, top, right, top + rest, right, top + reach);
    path.lineTo(right, bottom - reach);
    path.cubicTo(right, bottom - rest, right - rest, bottom, right - reach, bottom);
    path.lineTo(left + reach, bottom);
    path.cubicTo(left + rest, bottom, left, bottom - rest, left, bottom - reach);
    path.lineTo(left, top + reach);
    path.cubicTo(left, top + rest, left + rest, top, left + reach, top);
    path.closeSubpath();
    return path;
}

QPainterPath ring(const QRectF& area, double radius, double from, double to) {
    auto path = roundedRectangle(inset(area, from), radius - from);
    const auto hole = inset(area, to);
    if (hole.isValid()) {
        path.addPath(roundedRectangle(hole, radius - to));
    }
    path.setFillRule(Qt::OddEvenFill);
    return path;
}

} // namespace karto::drawing
