#include "KartoCore/TidyPlanner.h"

namespace karto::TidyPlanner {

std::vector<Rect> plan(std::size_t windowCount, std::span<const ResolvedZone> zones) {
    if (zones.empty()) {
        return {};
    }
    std::vector<Rect> rects;
    rects.reserve(windowCount);
    for (std::size_t window = 0; window < windowCount; ++window) {
        rects.push_back(zones[window % zones.size()].rect);
    }
    return rects;
}

} // namespace karto::TidyPlanner
