#pragma once
// Binds layouts to connected displays by name and orientation and turns their zones into screen rectangles.
// A ring here is the list of resolved zones ascending by ring number; numbers have gaps where displays are
// absent.

#include "KartoCore/DisplayInfo.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/LayoutTree.h"

#include <span>
#include <string>
#include <vector>

namespace karto {

struct KartoConfig;

struct ResolvedZone {
    // Ring number, from 1.
    int order = 0;
    std::string display;
    Orientation orientation = Orientation::landscape;
    // Global points, y down.
    Rect rect;

    bool operator==(const ResolvedZone&) const = default;
};

// Several connected displays that one layout cannot tell apart.
struct DisplayCollision {
    std::string name;
    Orientation orientation = Orientation::landscape;
    int count = 0;

    bool operator==(const DisplayCollision&) const = default;
};

namespace ZoneResolver {

// Displays without a name bind nothing; of several with one name and orientation the first takes all zones.
std::vector<ResolvedZone> resolve(const KartoConfig& config, std::span<const DisplayInfo> displays);

// Sorted by name, then landscape before portrait; only names that the configuration has a layout for.
std::vector<DisplayCollision> collisions(const KartoConfig& config, std::span<const DisplayInfo> displays);

} // namespace ZoneResolver

} // namespace karto
