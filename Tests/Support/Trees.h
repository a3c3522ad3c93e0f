#pragma once
// Builders of trees, layouts and rings, and generators of random ones. Generated splits stand at eighths, so
// that areas and edges are exact on displays whose sides are powers of two.

#include "KartoCore/DisplayInfo.h"
#include "KartoCore/LayoutTree.h"
#include "KartoCore/ZoneResolver.h"

#include <rapidcheck.h>

#include <cstdint>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace karto {

// For example "(0.25 . | (0.5 . / .3))": "|" divides the width, "/" the height, a number is a pin.
std::ostream& operator<<(std::ostream& out, const LayoutNode& node);

} // namespace karto

namespace karto::testing {

constexpr Rect rectAt(double x, double y, double width, double height) { return {x, y, width, height}; }

LayoutNode zone(std::optional<std::int64_t> pinnedOrder = std::nullopt);
LayoutNode columns(double at, LayoutNode left, LayoutNode right);
LayoutNode rows(double at, LayoutNode top, LayoutNode bottom);
// `count` equal parts side by side.
LayoutNode equalColumns(int count, const LayoutNode& part);

DisplayLayout landscape(std::string name, LayoutNode root);
DisplayLayout portrait(std::string name, LayoutNode root);

// True when the zones cover the unit square without overlapping. For edges at eighths, which add up exactly.
bool tileTheDisplay(std::span<const TreeZone> zones);
// True when the trees share every subtree that branches off the path.
bool shareAllBeside(const NodePath& path, const LayoutNode& one, const LayoutNode& other);

std::vector<ResolvedZone> ringOf(std::span<const DisplayLayout> layouts,
                                 std::span<const DisplayInfo> displays);
// The ring of one landscape display.
std::vector<ResolvedZone> ringOf(const LayoutNode& root, const Rect& frame);

// At most five splits deep, some leaves pinned to -2...9.
rc::Gen<LayoutNode> trees();
// Up to four, of the displays "A" and "B" in both orientations.
rc::Gen<std::vector<DisplayLayout>> layouts();

} // namespace karto::testing
