#include "KartoCore/OverlayLayout.h"

#include <fmt/format.h>

namespace karto {

namespace {

OverlayZones zonesOn(const DisplayInfo& display, std::span<const ResolvedZone> ring) {
    OverlayZones zones;
    for (const ResolvedZone& zone : ring) {
        if (zone.display == display.name && zone.orientation == display.orientation()) {
            zones.push_back({.number = zone.order, .rect = zone.rect});
        }
    }
    return zones;
}

OverlayMessage noZonesMessage(const DisplayInfo& display, int configuredZoneCount) {
    if (display.name.empty()) {
        return "This display reports no name, so no zones can be bound to it. "
               "Karto matches zones by display name.";
    }
    return fmt::format("No zones for \"{}\". The config has {} zone(s), none of them bound to this display "
                       "in its current orientation.",
                       display.name, configuredZoneCount);
}

} // namespace

std::vector<OverlayScreen> OverlayLayout::build(std::span<const ResolvedZone> ring,
                                                std::span<const DisplayInfo> displays,
                                                int configuredZoneCount,
                                                const std::optional<std::string>& configError) {
    std::vector<OverlayScreen> screens;
    for (const DisplayInfo& display : displays) {
        if (configError) {
            screens.push_back({.display = display, .content = "Config error: " + *configError});
            continue;
        }
        OverlayZones zones = zonesOn(display, ring);
        if (zones.empty()) {
            screens.push_back({.display = display, .content = noZonesMessage(display, configuredZoneCount)});
            continue;
        }
        screens.push_back({.display = display, .content = std::move(zones)});
    }
    return screens;
}

} // namespace karto
