#pragma once
// Arithmetic on rectangles of whole pixels.

#include "KartoCore/Picture.h"

#include <vector>

namespace karto::x11 {

inline bool overlap(const PixelRect& a, const PixelRect& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

// What is left of the areas where the hole is not.
std::vector<PixelRect> without(const std::vector<PixelRect>& areas, const PixelRect& hole);

} // namespace karto::x11
