#include "KartoCore/DisplayMapOrdering.h"

#include <algorithm>
#include <utility>

namespace karto::DisplayMapOrdering {

std::vector<DisplayInfo> sorted(std::span<const DisplayInfo> displays) {
    const auto origin = [](const DisplayInfo& display) {
        return std::pair(display.frame.x, display.frame.y);
    };
    std::vector<DisplayInfo> result;
    for (const DisplayInfo& display : displays) {
        result.insert(std::ranges::upper_bound(result, origin(display), {}, origin), display);
    }
    return result;
}

} // namespace karto::DisplayMapOrdering
