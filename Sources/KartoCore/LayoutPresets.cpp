#include "KartoCore/LayoutPresets.h"

#include <utility>

namespace karto::LayoutPresets {

namespace {

// Zones without pins.
LayoutNode halves(Axis axis) { return Split{.axis = axis, .at = 0.5, .first = {}, .second = {}}; }

LayoutNode thirds(Axis axis) { return Split{.axis = axis, .at = 0.333, .first = {}, .second = halves(axis)}; }

LayoutNode wideAndNarrow(Axis axis) { return Split{.axis = axis, .at = 0.667, .first = {}, .second = {}}; }

std::vector<LayoutPreset> landscapePresets() {
    constexpr auto axis = Axis::vertical;
    constexpr auto orientation = Orientation::landscape;
    return {
        {.id = "halves", .name = "Halves", .orientation = orientation, .root = halves(axis)},
        {.id = "thirds", .name = "Thirds", .orientation = orientation, .root = thirds(axis)},
        {.id = "wide-and-narrow",
         .name = "Two thirds and a third",
         .orientation = orientation,
         .root = wideAndNarrow(axis)},
    };
}

std::vector<LayoutPreset> portraitPresets() {
    constexpr auto axis = Axis::horizontal;
    constexpr auto orientation = Orientation::portrait;
    return {
        {.id = "halves", .name = "Halves", .orientation = orientation, .root = halves(axis)},
        {.id = "thirds", .name = "Thirds", .orientation = orientation, .root = thirds(axis)},
    };
}

} // namespace

const std::vector<LayoutPreset>& all(Orientation orientation) {
    static const std::vector<LayoutPreset> landscape = landscapePresets();
    static const std::vector<LayoutPreset> portrait = portraitPresets();
    switch (orientation) {
    case Orientation::landscape: return landscape;
    case Orientation::portrait: return portrait;
    }
    std::unreachable();
}

} // namespace karto::LayoutPresets
