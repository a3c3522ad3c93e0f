#include "Karto/Drawing/Symbols.h"

#include "Karto/Drawing/RoundedRectangle.h"

#include <algorithm>

namespace karto::drawing {

namespace {

// Of the size.
constexpr double strokeOfSize = 0.11;
constexpr double frameWidthOfSize = 1.29;
constexpr double frameHeightOfSize = 1.0;
constexpr double frameRadiusOfSize = 0.2;
constexpr double canWidthOfSize = 1.0;
constexpr double canHeightOfSize = 1.15;

int strokeOf(double size) { return std::max(1, qRound(size * strokeOfSize)); }

// At least of that length, with a stroke exactly in its middle.
int withMiddle(double length, int stroke) {
    const int whole = qRound(length);
    return whole + (whole - stroke) % 2;
}

QRect centred(QSize size, const QRect& area) {
    return {
        QPoint(area.x() + (area.width() - size.width()) / 2, area.y() + (area.height() - size.height()) / 2),
        size};
}

QPainterPath frame(const QRect& area, double size) {
    return ring(area, size * frameRadiusOfSize, 0, strokeOf(size));
}

QPainterPath dividedFrame(const QRect& area, double size, Qt::Orientation divider) {
    const int stroke = strokeOf(size);
    const QRect outer = centred(
        {withMiddle(size * frameWidthOfSize, stroke), withMiddle(size * frameHeightOfSize, stroke)}, area);
    const QSize extent = divider == Qt::Vertical ? QSize(stroke, outer.height() - 2 * stroke)
                                                 : QSize(outer.width() - 2 * stroke, stroke);
    auto path = frame(outer, size);
    path.addRect(centred(extent, outer));
    return path;
}

QPainterPath trash(const QRect& area, double size) {
    const int stroke = strokeOf(size);
    const QRect outer =
        centred({withMiddle(size * canWidthOfSize, stroke), qRound(size * canHeightOfSize)}, area);
    // The lid and its handle.
    const int handleHeight = stroke + std::max(1, stroke / 2);
    const int handleWidth = withMiddle(size * 0.4, stroke);
    const QRect lid(outer.x(), outer.y() + handleHeight, outer.width(), stroke);
    const QRect handle(outer.x() + (outer.width() - handleWidth) / 2, outer.y(), handleWidth,
                       handleHeight + stroke);
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(lid, stroke / 2.0, stroke / 2.0);
    QPainterPath arch;
    arch.addRoundedRect(handle, stroke, stroke);
    QPainterPath hole;
    hole.addRect(handle.adjusted(stroke, stroke, -stroke, 0));
    path = path.united(arch.subtracted(hole));

    // The can, narrower towards its bottom.
    const int top = lid.bottom() + 1;
    const double inset = stroke * 0.9;
    const double taper = stroke * 0.5;
    const double bottom = outer.bottom() + 1;
    const double radius = stroke * 1.2;
    const auto can = [&](double by) {
        QPainterPath side;
        const double left = outer.left() + inset + by;
        const double right = outer.right() + 1 - inset - by;
        const double floor = bottom - by;
        const double round = std::max(0.0, radius - by);
        side.moveTo(left, top);
        side.lineTo(left + taper, floor - round);
        side.quadTo(left + taper, floor, left + taper + round, floor);
        side.lineTo(right - taper - round, floor);
        side.quadTo(right - taper, floor, right - taper, floor - round);
        side.lineTo(right, top);
        side.closeSubpath();
        return side;
    };
    path = path.united(can(0).subtracted(can(stroke)));

    // Two ribs.
    const int rib = std::max(1, stroke / 2);
    const int gap = std::max(1, (outer.width() - 2 * qRound(inset + taper + stroke) - 2 * rib) / 3);
    const int ribTop = top + stroke;
    const int ribBottom = outer.bottom() + 1 - 2 * stroke;
    const int middle = outer.x() * 2 + outer.width();
    const int leftRib = (middle - gap) / 2 - rib;
    path.addRect(QRect(leftRib, ribTop, rib, ribBottom - ribTop));
    path.addRect(QRect(middle - leftRib - rib, ribTop, rib, ribBottom - ribTop));
    return path;
}

} // namespace

QPainterPath symbolPath(Symbol symbol, const QRect& area, double size) {
    switch (symbol) {
    case Symbol::twoColumns: return dividedFrame(area, size, Qt::Vertical);
    case Symbol::twoRows: return dividedFrame(area, size, Qt::Horizontal);
    case Symbol::trash: break;
    }
    return trash(area, size);
}

} // namespace karto::drawing
