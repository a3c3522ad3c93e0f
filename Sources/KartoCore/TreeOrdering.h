#pragma once
// The ring: every zone of every layout, connected or not, numbered 1 to N without a gap.
// Pinned zones take their numbers first, the others the free numbers in walk order: layout by layout, each in
// tree order, a portrait layout's tree reversed.

#include "KartoCore/LayoutTree.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace karto {

struct RingEntry {
    DisplayLayout display;
    TreeZone zone;
    int order = 0;

    bool operator==(const RingEntry&) const = default;
};

namespace TreeOrdering {

// One entry a zone, in walk order, not sorted by number.
std::vector<RingEntry> ringOrder(std::span<const DisplayLayout> layouts);

int ringSize(std::span<const DisplayLayout> layouts);

// The ring number that a pin asks for: the pin moved into 1...size.
int claimedOrder(std::int64_t pinned, int size);

// The tree with the leaf at `path` pinned to `order` as given, or unpinned; unchanged when the path ends on
// no leaf.
LayoutNode pin(const NodePath& path, std::int64_t order, const LayoutNode& root);
LayoutNode unpin(const NodePath& path, const LayoutNode& root);

// The tree without any pin that claims `order` in a ring of `size` zones.
LayoutNode unpinEveryClaimOn(int order, int size, const LayoutNode& root);

// Number of the first zone at `path` on a layout of that name and orientation; absent if there is none.
std::optional<int> order(const NodePath& path, std::string_view display, Orientation orientation,
                         std::span<const DisplayLayout> layouts);

// Path of the first zone with that number on a layout of that name and orientation; absent if there is none.
std::optional<NodePath> path(int order, std::string_view display, Orientation orientation,
                             std::span<const DisplayLayout> layouts);

// Ring number at which a row dragged from row `from` (0-based) to insertion position `to` (0-based, counted
// before the move) lands; absent when it stays where it is.
std::optional<int> landingOrder(int from, int to);

} // namespace TreeOrdering

} // namespace karto
