#pragma once
// What a person should know about layouts and the displays that they are for. Warnings stop nothing: a layout
// whose display is away keeps its zones.

#include "KartoCore/Config.h"
#include "KartoCore/DisplayInfo.h"
#include "KartoCore/LayoutTree.h"

#include <span>
#include <string>
#include <variant>
#include <vector>

namespace karto {

namespace LayoutWarnings {

struct DisplayNotConnected {
    std::string name;
    Orientation orientation = Orientation::landscape;

    bool operator==(const DisplayNotConnected&) const = default;
};

struct DuplicateDisplayName {
    std::string name;
    Orientation orientation = Orientation::landscape;
    // Connected displays of that name and orientation.
    int count = 0;

    bool operator==(const DuplicateDisplayName&) const = default;
};

} // namespace LayoutWarnings

using LayoutWarning = std::variant<LayoutWarnings::DisplayNotConnected, LayoutWarnings::DuplicateDisplayName>;

// The sentence for the settings window.
std::string message(const LayoutWarning& warning);

namespace LayoutCheck {

// First the layouts whose display is not connected in their orientation, by name and then landscape before
// portrait, each name and orientation once; then the displays that a layout cannot tell apart.
std::vector<LayoutWarning> warnings(const KartoConfig& config, std::span<const DisplayInfo> displays);

} // namespace LayoutCheck

} // namespace karto
