#include "KartoCore/ZoneSets.h"

#include "KartoCore/Membership.h"

#include <algorithm>
#include <cmath>
#include <compare>
#include <iterator>
#include <limits>
#include <map>
#include <ranges>
#include <string_view>
#include <tuple>
#include <utility>

namespace karto::ZoneSets {

namespace {

// Square points, or points for a width: what rounding alone may add up to.
constexpr double negligible = 0.5;

// Areas are compared at half a square point.
double areaScore(double area) { return std::round(2 * area); }

// A set of zones of one display by their places there, and the box around them.
struct Patch {
    std::vector<bool> holds;
    std::size_t size = 0;
    Rect box = Rect::null();
};

// What a step to a larger patch costs, the weightiest first.
struct StepCost {
    double areaScore = 0;
    bool widthChanged = false;
    int lowestOrder = 0;

    auto operator<=>(const StepCost&) const = default;
};

// The zones of one display in flat columns; a place is a position in them.
class DisplayZones {
public:
    DisplayZones(std::size_t index, std::span<const ResolvedZone> ring)
        : indices_(indicesOnDisplayOf(index, ring)) {
        for (const std::size_t position : indices_) {
            rects_.push_back(ring[position].rect);
            orders_.push_back(ring[position].order);
        }
    }

    // The zones of the set that stand on this display.
    [[nodiscard]] Patch patch(const ZoneSet& set) const {
        Patch patch{.holds = std::vector<bool>(indices_.size())};
        for (std::size_t place = 0; place < indices_.size(); ++place) {
            if (set.contains(indices_[place])) {
                add(place, patch);
            }
        }
        return patch;
    }

    // The zones that a box overlaps have to join it, and may enlarge it. What is found does not depend on the
    // order of joining.
    void close(Patch& patch) const {
        std::size_t before = 0;
        while (patch.size != before) {
            before = patch.size;
            for (std::size_t place = 0; place < indices_.size(); ++place) {
                if (!patch.holds[place] && overlapArea(rects_[place], patch.box) > negligible) {
                    add(place, patch);
                }
            }
        }
    }

    // The cheapest closed patch around one more zone, the earlier on a tie. width: of the box to start from.
    [[nodiscard]] std::optional<Patch> expanded(const Patch& patch, double width) const {
        std::optional<Patch> best;
        StepCost bestCost;
        for (std::size_t place = 0; place < indices_.size(); ++place) {
            if (patch.holds[place]) {
                continue;
            }
            Patch grown = patch;
            add(place, grown);
            close(grown);
            const StepCost cost{.areaScore = areaScore(grown.box.area()),
                                .widthChanged = std::abs(grown.box.width - width) > negligible,
                                .lowestOrder = lowestOrderAdded(patch, grown)};
            if (!best || cost < bestCost) {
                best = std::move(grown);
                bestCost = cost;
            }
        }
        return best;
    }

    [[nodiscard]] ZoneSet zoneSet(const Patch& patch) const {
        ZoneSet set;
        for (std::size_t place = 0; place < indices_.size(); ++place) {
            if (patch.holds[place]) {
                set.insert(set.end(), indices_[place]);
            }
        }
        return set;
    }

private:
    void add(std::size_t place, Patch& patch) const {
        patch.holds[place] = true;
        ++patch.size;
        patch.box = unionOf(patch.box, rects_[place]);
    }

    [[nodiscard]] int lowestOrderAdded(const Patch& from, const Patch& to) const {
        int lowest = std::numeric_limits<int>::max();
        for (std::size_t place = 0; place < indices_.size(); ++place) {
            if (to.holds[place] && !from.holds[place]) {
                lowest = std::min(lowest, orders_[place]);
            }
        }
        return lowest;
    }

    std::vector<std::size_t> indices_; // in the ring, ascending
    std::vector<Rect> rects_;
    std::vector<int> orders_;
};

bool isSubset(const Patch& part, const Patch& whole) {
    for (std::size_t place = 0; place < part.holds.size(); ++place) {
        if (part.holds[place] && !whole.holds[place]) {
            return false;
        }
    }
    return true;
}

ZoneSet insideRing(const ZoneSet& set, std::span<const ResolvedZone> ring) {
    return {set.begin(), set.lower_bound(ring.size())};
}

// How much of a window one display's zones hold.
struct DisplayShare {
    std::vector<std::size_t> indices;
    double overlap = 0;
    int lowestOrder = std::numeric_limits<int>::max();
};

} // namespace

std::vector<std::size_t> indicesOnDisplayOf(std::size_t index, std::span<const ResolvedZone> ring) {
    std::vector<std::size_t> indices;
    if (index >= ring.size()) {
        return indices;
    }
    const ResolvedZone& zone = ring[index];
    for (std::size_t other = 0; other < ring.size(); ++other) {
        if (ring[other].display == zone.display && ring[other].orientation == zone.orientation) {
            indices.push_back(other);
        }
    }
    return indices;
}

std::vector<std::size_t> indicesOnDisplayHolding(const Rect& window, std::span<const ResolvedZone> ring) {
    std::map<std::pair<std::string_view, Orientation>, DisplayShare> shares;
    for (std::size_t index = 0; index < ring.size(); ++index) {
        const ResolvedZone& zone = ring[index];
        DisplayShare& share = shares[{zone.display, zone.orientation}];
        share.indices.push_back(index);
        share.overlap += overlapArea(window, zone.rect);
        share.lowestOrder = std::min(share.lowestOrder, zone.order);
    }
    const auto largest = std::ranges::min_element(shares, {}, [](const auto& entry) {
        const DisplayShare& share = entry.second;
        return std::tuple(-areaScore(share.overlap), share.lowestOrder, share.indices.front());
    });
    if (largest == shares.end() || areaScore(largest->second.overlap) <= 0) {
        return {};
    }
    return largest->second.indices;
}

Rect boundingBox(const ZoneSet& set, std::span<const ResolvedZone> ring) {
    Rect box = Rect::null();
    for (const std::size_t index : insideRing(set, ring)) {
        box = unionOf(box, ring[index].rect);
    }
    return box;
}

std::optional<Rect> rect(const ZoneSet& set, std::span<const ResolvedZone> ring) {
    const Rect box = boundingBox(set, ring);
    return box.isNull() ? std::nullopt : std::optional(box);
}

ZoneSet closure(const ZoneSet& set, std::span<const ResolvedZone> ring) {
    const ZoneSet kept = insideRing(set, ring);
    if (kept.empty()) {
        return set;
    }
    const DisplayZones zones(*kept.begin(), ring);
    Patch patch = zones.patch(kept);
    zones.close(patch);
    return zones.zoneSet(patch);
}

std::optional<ZoneSet> state(const Rect& window, std::span<const ResolvedZone> ring) {
    const std::vector<std::size_t> group = indicesOnDisplayHolding(window, ring);
    ZoneSet covered;
    std::vector<Rect> rects;
    for (const std::size_t index : group) {
        const Rect& zone = ring[index].rect;
        rects.push_back(zone);
        if (overlapArea(window, zone) >= zone.area() / 2) {
            covered.insert(index);
        }
    }
    if (!covered.empty()) {
        return closure(covered, ring);
    }
    return Membership::holder(window, rects).transform([&](std::size_t place) {
        return ZoneSet{group[place]};
    });
}

std::optional<ZoneSet> expanded(const ZoneSet& set, std::span<const ResolvedZone> ring) {
    const ZoneSet kept = insideRing(set, ring);
    if (kept.empty()) {
        return std::nullopt;
    }
    const DisplayZones zones(*kept.begin(), ring);
    return zones.expanded(zones.patch(kept), boundingBox(kept, ring).width).transform([&](const Patch& step) {
        return zones.zoneSet(step);
    });
}

std::optional<ZoneSet> shrunk(const ZoneSet& set, std::optional<std::size_t> origin,
                              std::span<const ResolvedZone> ring) {
    const ZoneSet kept = insideRing(set, ring);
    if (kept.size() < 2) {
        return std::nullopt;
    }
    const std::size_t seed =
        origin && kept.contains(*origin)
            ? *origin
            : *std::ranges::min_element(kept, {}, [&](std::size_t index) { return ring[index].order; });
    const DisplayZones zones(seed, ring);
    const Patch whole = zones.patch(kept);
    Patch step = zones.patch({seed});
    while (auto larger = zones.expanded(step, step.box.width)) {
        if (larger->size >= kept.size() || !isSubset(*larger, whole)) {
            break;
        }
        step = *std::move(larger);
    }
    return zones.zoneSet(step);
}

} // namespace karto::ZoneSets
