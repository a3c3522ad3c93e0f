#include "Karto/Overlay/ZoneButtons.h"

#include "KartoCore/LayoutTreeEditing.h"
#include "KartoCore/ZoneEditing.h"

#include <algorithm>
#include <cstddef>

namespace karto::ZoneButtons {

namespace {

bool contains(const PixelRect& area, Point point) {
    return area.x <= point.x && point.x < area.x + area.width && area.y <= point.y &&
           point.y < area.y + area.height;
}

} // namespace

PixelRect area(ZoneButton button, const NormRect& zone, const EditingSpace& space) {
    const PixelRect around = space.pixels(zone);
    const int side = nearestPixel(ZoneEditing::buttonSide * space.scale);
    const int pitch = side + nearestPixel(ZoneEditing::buttonSpacing * space.scale);
    const int clusterWidth = pitch * static_cast<int>(all.size() - 1) + side;
    return {.x = around.x + (around.width - clusterWidth) / 2 + pitch * static_cast<int>(button),
            .y = around.y + (around.height - side) / 2,
            .width = side,
            .height = side};
}

std::optional<ZoneButton> at(Point point, const NormRect& zone, const EditingSpace& space) {
    const auto* const found =
        std::ranges::find_if(all, [&](ZoneButton each) { return contains(area(each, zone, space), point); });
    return found != all.end() ? std::optional(*found) : std::nullopt;
}

bool isEnabled(ZoneButton button, const NodePath& zone, const LayoutNode& root) {
    return button == ZoneButton::remove ? LayoutTreeEditing::canRemoveZone(zone, root)
                                        : LayoutTreeEditing::canSplit(zone, root);
}

std::string_view helpText(ZoneButton button, bool isEnabled) {
    switch (button) {
    case ZoneButton::splitIntoColumns:
        return isEnabled ? "Split into two columns" : "This zone cannot be split any further";
    case ZoneButton::splitIntoRows:
        return isEnabled ? "Split into two rows" : "This zone cannot be split any further";
    case ZoneButton::remove: break;
    }
    return isEnabled ? "Remove this zone" : "A display's only zone cannot be removed";
}

ZoneEdit edit(ZoneButton button, const NodePath& zone) {
    switch (button) {
    case ZoneButton::splitIntoColumns: return ZoneEdits::Split{.path = zone, .axis = Axis::vertical};
    case ZoneButton::splitIntoRows: return ZoneEdits::Split{.path = zone, .axis = Axis::horizontal};
    case ZoneButton::remove: break;
    }
    return ZoneEdits::Remove{.path = zone};
}

} // namespace karto::ZoneButtons
