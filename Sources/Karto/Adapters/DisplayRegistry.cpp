#include "Karto/Adapters/DisplayRegistry.h"

#include <utility>

namespace karto {

std::vector<DisplayInfo> readDisplays(Screens& system) {
    auto screens = system.screens();
    const bool flipped = system.verticalAxis() == VerticalAxis::up;
    std::vector<DisplayInfo> displays;
    displays.reserve(screens.size());
    for (Screen& screen : screens) {
        displays.push_back({.name = std::move(screen.name),
                            .frame = flipped
                                         ? DisplayRegistry::flip(screen.visibleFrame, screens.front().frame)
                                         : screen.visibleFrame});
    }
    return displays;
}

DisplayRegistry::DisplayRegistry(Screens& screens)
    : screens_(screens) {
    changes_ = screens_.observeChanges(callbacks_.wrap([this] { cache_.reset(); }));
}

const std::vector<DisplayInfo>& DisplayRegistry::displays() {
    if (!cache_) {
        cache_ = readDisplays(screens_);
    }
    return *cache_;
}

Rect DisplayRegistry::flip(const Rect& rect, const Rect& primaryScreen) {
    return {.x = rect.x, .y = primaryScreen.maxY() - rect.maxY(), .width = rect.width, .height = rect.height};
}

} // namespace karto
