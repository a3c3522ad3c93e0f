#pragma once
// What the overlay shows on each display: its numbered zones, or a sentence that says why there are none.

#include "KartoCore/DisplayInfo.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/ZoneResolver.h"

#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace karto {

struct OverlayZone {
    // Ring number: the digit that moves a window there.
    int number = 0;
    // Global points.
    Rect rect;
    bool isSelected = false;

    bool operator==(const OverlayZone&) const = default;
};

using OverlayZones = std::vector<OverlayZone>;
using OverlayMessage = std::string;
// Zones (never empty as built here) or a message in their place.
using OverlayScreenContent = std::variant<OverlayZones, OverlayMessage>;

struct OverlayScreen {
    DisplayInfo display;
    OverlayScreenContent content;

    bool operator==(const OverlayScreen&) const = default;
};

namespace OverlayLayout {

// One screen a display, in the order of the displays. configuredZoneCount counts the whole configuration;
// a configError takes the place of everything else.
std::vector<OverlayScreen> build(std::span<const ResolvedZone> ring, std::span<const DisplayInfo> displays,
                                 int configuredZoneCount, const std::optional<std::string>& configError);

} // namespace OverlayLayout

} // namespace karto
