#include "KartoCore/Membership.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace karto::Membership {

std::optional<std::size_t> holder(const Rect& rect, std::span<const Rect> candidates) {
    std::optional<std::size_t> best;
    double bestArea = 0;
    for (std::size_t index = 0; index < candidates.size(); ++index) {
        const double area = overlapArea(rect, candidates[index]);
        if (area > bestArea) {
            best = index;
            bestArea = area;
        }
    }
    return best;
}

std::optional<std::size_t> zoneIndex(const Rect& window, std::span<const ResolvedZone> zones) {
    std::vector<Rect> rects;
    std::ranges::transform(zones, std::back_inserter(rects), &ResolvedZone::rect);
    return holder(window, rects);
}

} // namespace karto::Membership
