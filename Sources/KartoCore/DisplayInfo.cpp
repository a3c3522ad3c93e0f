#include "KartoCore/DisplayInfo.h"

#include <algorithm>
#include <iterator>

namespace karto {

std::vector<Rect> frames(std::span<const DisplayInfo> displays) {
    std::vector<Rect> frames;
    frames.reserve(displays.size());
    std::ranges::transform(displays, std::back_inserter(frames), &DisplayInfo::frame);
    return frames;
}

} // namespace karto
