#pragma once
// Ready-made trees that a display can be given.

#include "KartoCore/LayoutTree.h"

#include <string>
#include <vector>

namespace karto {

struct LayoutPreset {
    // The presets of one idea in both orientations share their id.
    std::string id;
    // What a person reads.
    std::string name;
    Orientation orientation = Orientation::landscape;
    LayoutNode root;

    bool operator==(const LayoutPreset&) const = default;
};

namespace LayoutPresets {

// In the order of listing.
const std::vector<LayoutPreset>& all(Orientation orientation);

} // namespace LayoutPresets

} // namespace karto
