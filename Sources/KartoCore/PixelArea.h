#pragma once
// Arithmetic on rectangles of whole pixels.

#include "KartoCore/Geometry.h"

#include <span>
#include <vector>

namespace karto {

inline bool overlap(const PixelRect& a, const PixelRect& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

// Where the area meets each of the others.
std::vector<PixelRect> common(const PixelRect& area, std::span<const PixelRect> others);

// What is left of the areas where the hole is not.
std::vector<PixelRect> without(const std::vector<PixelRect>& areas, const PixelRect& hole);

// Adds to areas that do not overlap what they lack of another one.
void unite(std::vector<PixelRect>& areas, const PixelRect& other);

// The smallest area around all of them, of which there must be one.
PixelRect boundsOf(std::span<const PixelRect> areas);

} // namespace karto
