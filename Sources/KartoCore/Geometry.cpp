#include "KartoCore/Geometry.h"

#include <algorithm>
#include <cmath>

namespace karto {

Rect NormRect::pixelRect(const Rect& frame) const {
    return {.x = frame.x + x * frame.width,
            .y = frame.y + y * frame.height,
            .width = w * frame.width,
            .height = h * frame.height};
}

int nearestPixel(double coordinate) {
    constexpr double roundingError = 1e-6;
    constexpr double farEnd = 0x1000'0000;
    const double pixel = std::floor(coordinate + 0.5 + roundingError);
    return std::isnan(pixel) ? 0 : static_cast<int>(std::clamp(pixel, -farEnd, farEnd));
}

PixelRect nearestPixels(const Rect& rect) {
    const int left = nearestPixel(rect.x);
    const int top = nearestPixel(rect.y);
    return {.x = left,
            .y = top,
            .width = nearestPixel(rect.maxX()) - left,
            .height = nearestPixel(rect.maxY()) - top};
}

double overlapArea(const Rect& a, const Rect& b) {
    const double left = std::max(a.x, b.x);
    const double right = std::min(a.maxX(), b.maxX());
    const double top = std::max(a.y, b.y);
    const double bottom = std::min(a.maxY(), b.maxY());
    return left < right && top < bottom ? (right - left) * (bottom - top) : 0;
}

Rect unionOf(const Rect& a, const Rect& b) {
    if (a.isNull()) {
        return b;
    }
    if (b.isNull()) {
        return a;
    }
    const double left = std::min(a.x, b.x);
    const double top = std::min(a.y, b.y);
    return {.x = left,
            .y = top,
            .width = std::max(a.maxX(), b.maxX()) - left,
            .height = std::max(a.maxY(), b.maxY()) - top};
}

double iou(const Rect& a, const Rect& b) {
    const double intersection = overlapArea(a, b);
    if (intersection == 0) {
        return 0;
    }
    const double whole = a.area() + b.area() - intersection;
    return whole > 0 ? intersection / whole : 0;
}

} // namespace karto
