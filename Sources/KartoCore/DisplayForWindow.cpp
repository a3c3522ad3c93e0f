#include "KartoCore/DisplayForWindow.h"

#include "KartoCore/Membership.h"

namespace karto::DisplayForWindow {

std::optional<DisplayInfo> holding(const Rect& windowFrame, std::span<const DisplayInfo> displays) {
    return Membership::holder(windowFrame, frames(displays)).transform([&](std::size_t index) {
        return displays[index];
    });
}

} // namespace karto::DisplayForWindow
