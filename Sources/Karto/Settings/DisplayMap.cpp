#include "Karto/Settings/DisplayMap.h"

#include "KartoCore/DisplayMapOrdering.h"

#include <algorithm>

namespace karto {

std::vector<DisplayMapBox> displayMap(std::span<const DisplayInfo> displays, const Size& picture) {
    Rect whole = Rect::null();
    for (const DisplayInfo& display : displays) {
        whole = unionOf(whole, display.frame);
    }
    if (whole.width <= 0 || whole.height <= 0) {
        return {};
    }
    const double scale = std::min(picture.width / whole.width, picture.height / whole.height);
    const Point margin{.x = (picture.width - whole.width * scale) / 2,
                       .y = (picture.height - whole.height * scale) / 2};
    std::vector<DisplayMapBox> boxes;
    for (DisplayInfo& display : DisplayMapOrdering::sorted(displays)) {
        const bool isUsable = !display.name.empty();
        const Rect frame{.x = margin.x + (display.frame.x - whole.x) * scale,
                         .y = margin.y + (display.frame.y - whole.y) * scale,
                         .width = display.frame.width * scale,
                         .height = display.frame.height * scale};
        boxes.push_back({.display = display,
                         .frame = frame,
                         .text = isUsable ? display.name : "no name — unusable",
                         .isUsable = isUsable});
    }
    return boxes;
}

void reconcileSelection(SettingsModel& model) {
    const auto selected = model.selectedDisplay();
    if (!selected) {
        return;
    }
    const auto& displays = model.status().displays;
    const auto same = std::ranges::find_if(displays, [&](const DisplayInfo& display) {
        return display.name == selected->name && display.orientation() == selected->orientation();
    });
    if (same != displays.end()) {
        model.selectDisplay(*same);
    } else {
        model.selectDisplay(std::nullopt);
        model.selectZone(std::nullopt);
    }
}

void select(const DisplayInfo& display, SettingsModel& model) {
    model.selectDisplay(display);
    model.selectZone(std::nullopt);
}

} // namespace karto
