#include "Karto/Platform/X11/Stage/PixelArea.h"

#include <algorithm>

namespace karto::x11 {

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

} // namespace karto::x11
