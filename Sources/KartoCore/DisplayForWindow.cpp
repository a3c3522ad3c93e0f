#include "KartoCore/DisplayForWindow.h"

#include "KartoCore/Membership.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace karto::DisplayForWindow {

std::optional<DisplayInfo> holding(const Rect& windowFrame, std::span<const DisplayInfo> displays) {
    std::vector<Rect> frames;
    std::ranges::transform(displays, std::back_inserter(frames), &DisplayInfo::frame);
    return Membership::holder(windowFrame, frames).transform([&](std::size_t index) {
        return displays[index];
    });
}

} // namespace karto::DisplayForWindow
