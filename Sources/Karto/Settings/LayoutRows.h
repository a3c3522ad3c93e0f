#pragma once
// The two lists of zones in the settings: the zones of the selected display, and the ring of all zones.

#include "KartoCore/Config.h"
#include "KartoCore/DisplayInfo.h"
#include "KartoCore/LayoutEditor.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace karto {

struct ZoneRow {
    NodePath path;
    // Ring number.
    int order = 0;
    // Fractions of the display.
    NormRect rect;
    bool canSplit = false;
    bool canRemove = false;

    bool operator==(const ZoneRow&) const = default;
};

// The zones of a display in the orientation that it has.
std::vector<ZoneRow> zoneRows(const KartoConfig& config, const DisplayInfo& display);

// For example "x 0   y 0   w 0.333   h 1".
std::string rectText(const NormRect& rect, std::string_view decimalPoint);

struct RingOrderRow {
    int order = 0;
    // The name of the zone's layout; may be empty.
    std::string display;
    Orientation orientation = Orientation::landscape;
    NodePath path;
    bool isPinned = false;
    // Whether a display of that name and orientation is connected.
    bool isConnected = false;

    bool operator==(const RingOrderRow&) const = default;
};

// Every zone, by ring number.
std::vector<RingOrderRow> ringOrderRows(const KartoConfig& config, std::span<const DisplayInfo> connected);

// What a person reads of a display's name.
std::string nameText(std::string_view display);

std::string pinHelp(const RingOrderRow& row);

// Fixes the zone at the number that it has, or lets it follow the layout again.
void togglePin(const RingOrderRow& row, LayoutEditor& editor);

// Fixes the zone of the row at index `from` at the number of the place where it was dropped: before the row
// at index `to`, or behind all of them. Nothing when that is where it was.
void moveRow(std::span<const RingOrderRow> rows, int from, int to, LayoutEditor& editor);

} // namespace karto
