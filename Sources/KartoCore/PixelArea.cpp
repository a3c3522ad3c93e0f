#include "KartoCore/PixelArea.h"

#include <algorithm>

namespace karto {

std::vector<PixelRect> common(const PixelRect& area, std::span<const PixelRect> others) {
    std::vector<PixelRect> result;
    for (const auto& other : others) {
        if (overlap(area, other)) {
            const int x = std::max(area.x, other.x);
            const int y = std::max(area.y, other.y);
            result.push_back({.x = x,
                              .y = y,
                              .width = std::min(area.x + area.width, other.x + other.width) - x,
                              .height = std::min(area.y + area.height, other.y + other.height) - y});
        }
    }
    return result;
}

std::vector<PixelRect> without(const std::vector<PixelRect>& areas, const PixelRect& hole) {
    std::vector<PixelRect> left;
    const auto keep = [&left](int x, int y, int maxX, int maxY) {
        if (x < maxX && y < maxY) {
            left.push_back({.x = x, .y = y, .width = maxX - x, .height = maxY - y});
        }
    };
    for (const auto& area : areas) {
        if (!overlap(area, hole)) {
            left.push_back(area);
            continue;
        }
        const int maxX = area.x + area.width;
        const int maxY = area.y + area.height;
        const int top = std::max(area.y, hole.y);
        const int bottom = std::min(maxY, hole.y + hole.height);
        keep(area.x, area.y, maxX, top);
        keep(area.x, top, hole.x, bottom);
        keep(hole.x + hole.width, top, maxX, bottom);
        keep(area.x, bottom, maxX, maxY);
    }
    return left;
}

void unite(std::vector<PixelRect>& areas, const PixelRect& other) {
    std::vector<PixelRect> missing{other};
    for (const auto& area : areas) {
        if (overlap(area, other)) {
            missing = without(missing, area);
        }
    }
    areas.insert(areas.end(), missing.begin(), missing.end());
}

PixelRect boundsOf(std::span<const PixelRect> areas) {
    auto [x, y, width, height] = areas.front();
    int maxX = x + width;
    int maxY = y + height;
    for (const auto& area : areas) {
        x = std::min(x, area.x);
        y = std::min(y, area.y);
        maxX = std::max(maxX, area.x + area.width);
        maxY = std::max(maxY, area.y + area.height);
    }
    return {.x = x, .y = y, .width = maxX - x, .height = maxY - y};
}

} // namespace karto
