#include "KartoCore/TreeOrdering.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <utility>

namespace karto::TreeOrdering {

namespace {

constexpr int unnumbered = 0;

// Every zone in walk order, not numbered yet.
std::vector<RingEntry> walk(std::span<const DisplayLayout> layouts) {
    std::vector<RingEntry> entries;
    for (const DisplayLayout& layout : layouts) {
        std::vector<TreeZone> zones = layout.zones();
        if (layout.orientation == Orientation::portrait) {
            std::ranges::reverse(zones);
        }
        for (TreeZone& zone : zones) {
            entries.push_back({.display = layout, .zone = std::move(zone), .order = unnumbered});
        }
    }
    return entries;
}

bool belongsTo(const RingEntry& entry, std::string_view display, Orientation orientation) {
    return entry.display.name == display && entry.display.orientation == orientation;
}

} // namespace

std::vector<RingEntry> ringOrder(std::span<const DisplayLayout> layouts) {
    std::vector<RingEntry> ring = walk(layouts);
    const int size = static_cast<int>(ring.size());
    std::set<int> claimed;
    for (RingEntry& entry : ring) {
        const auto pinned = entry.zone.leaf.pinnedOrder;
        if (pinned && claimed.insert(claimedOrder(*pinned, size)).second) {
            entry.order = claimedOrder(*pinned, size);
        }
    }
    int free = 0;
    for (RingEntry& entry : ring) {
        if (entry.order == unnumbered) {
            do {
                ++free;
            } while (claimed.contains(free));
            entry.order = free;
        }
    }
    return ring;
}

int ringSize(std::span<const DisplayLayout> layouts) {
    std::size_t size = 0;
    for (const DisplayLayout& layout : layouts) {
        size += layout.zones().size();
    }
    return static_cast<int>(size);
}

int claimedOrder(std::int64_t pinned, int size) {
    return static_cast<int>(std::min<std::int64_t>(size, std::max<std::int64_t>(pinned, 1)));
}

LayoutNode pin(const NodePath& path, std::int64_t order, const LayoutNode& root) {
    return root.updateLeaf(path, [&](ZoneLeaf& leaf) { leaf.pinnedOrder = order; });
}

LayoutNode unpin(const NodePath& path, const LayoutNode& root) {
    return root.updateLeaf(path, [](ZoneLeaf& leaf) { leaf.pinnedOrder.reset(); });
}

LayoutNode unpinEveryClaimOn(int order, int size, const LayoutNode& root) {
    LayoutNode tree = root;
    for (const TreeZone& zone : root.zones(NormRect::full())) {
        const auto pinned = zone.leaf.pinnedOrder;
        if (pinned && claimedOrder(*pinned, size) == order) {
            tree = unpin(zone.path, tree);
        }
    }
    return tree;
}

std::optional<int> order(const NodePath& path, std::string_view display, Orientation orientation,
                         std::span<const DisplayLayout> layouts) {
    for (const RingEntry& entry : ringOrder(layouts)) {
        if (belongsTo(entry, display, orientation) && entry.zone.path == path) {
            return entry.order;
        }
    }
    return std::nullopt;
}

std::optional<NodePath> path(int order, std::string_view display, Orientation orientation,
                             std::span<const DisplayLayout> layouts) {
    for (const RingEntry& entry : ringOrder(layouts)) {
        if (belongsTo(entry, display, orientation) && entry.order == order) {
            return entry.zone.path;
        }
    }
    return std::nullopt;
}

std::optional<int> landingOrder(int from, int to) {
    const int target = from < to ? to - 1 : to;
    if (target == from) {
        return std::nullopt;
    }
    return target + 1;
}

} // namespace karto::TreeOrdering
