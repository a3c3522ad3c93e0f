#pragma once
// The buttons in the middle of a zone that is edited on the screen: where they are, what they say and do.

#include "Karto/Overlay/EditingSpace.h"
#include "Karto/Overlay/ZoneEdit.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/LayoutTree.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace karto {

// From left to right.
enum class ZoneButton : std::uint8_t { splitIntoColumns, splitIntoRows, remove };

namespace ZoneButtons {

inline constexpr std::array all{ZoneButton::splitIntoColumns, ZoneButton::splitIntoRows, ZoneButton::remove};

// Pixels of the window, around the middle of the zone.
PixelRect area(ZoneButton button, const NormRect& zone, const EditingSpace& space);

// The button at a point in pixels of the window.
std::optional<ZoneButton> at(Point point, const NormRect& zone, const EditingSpace& space);

// zone: its path in the tree.
bool isEnabled(ZoneButton button, const NodePath& zone, const LayoutNode& root);

std::string_view helpText(ZoneButton button, bool isEnabled);

ZoneEdit edit(ZoneButton button, const NodePath& zone);

} // namespace ZoneButtons

} // namespace karto
