#pragma once
// A display while its zones are edited. The pointer and what is painted are pixels of its window; the
// measures of editing are points, so that what one grabs is as large as it looks.

#include "KartoCore/Geometry.h"

namespace karto {

struct EditingSpace {
    // Of the window, in pixels.
    Size extent;
    // Pixels to a point.
    double scale = 1;

    [[nodiscard]] Size displaySize() const {
        return {.width = extent.width / scale, .height = extent.height / scale};
    }

    [[nodiscard]] Point points(Point pixels) const { return {.x = pixels.x / scale, .y = pixels.y / scale}; }

    [[nodiscard]] PixelRect pixels(const Rect& points) const {
        return nearestPixels({.x = points.x * scale,
                              .y = points.y * scale,
                              .width = points.width * scale,
                              .height = points.height * scale});
    }

    [[nodiscard]] PixelRect pixels(const NormRect& fractions) const {
        return nearestPixels(
            fractions.pixelRect({.x = 0, .y = 0, .width = extent.width, .height = extent.height}));
    }

    bool operator==(const EditingSpace&) const = default;
};

} // namespace karto
