#pragma once
// Expanding and shrinking: sets of zones of one display that together fill a rectangle.
// A set holds positions in a ring (ZoneResolver::resolve's result, from 0). Positions outside the ring are
// ignored.

#include "KartoCore/Geometry.h"
#include "KartoCore/ZoneResolver.h"

#include <cstddef>
#include <optional>
#include <set>
#include <span>
#include <vector>

namespace karto {

using ZoneSet = std::set<std::size_t>;

namespace ZoneSets {

// All zones on the display and orientation of zone `index`, itself included, in ring order; empty outside the
// ring.
std::vector<std::size_t> indicesOnDisplayOf(std::size_t index, std::span<const ResolvedZone> ring);

// The zones of the display that holds most of the window, in ring order; empty when it overlaps no zone.
std::vector<std::size_t> indicesOnDisplayHolding(const Rect& window, std::span<const ResolvedZone> ring);

// The smallest rectangle around the zones of the set; null (absent for rect) when the set holds none.
Rect boundingBox(const ZoneSet& set, std::span<const ResolvedZone> ring);
std::optional<Rect> rect(const ZoneSet& set, std::span<const ResolvedZone> ring);

// The smallest set of zones of one display that contains the set's zones there and fills its own bounding
// box. The display is that of the set's lowest position; a set with no position in the ring stays as it is.
ZoneSet closure(const ZoneSet& set, std::span<const ResolvedZone> ring);

// The zones that a window occupies; absent when it overlaps none.
std::optional<ZoneSet> state(const Rect& window, std::span<const ResolvedZone> ring);

// The next larger set: the smallest step, rather in height than in width, rather over low numbers. Absent
// when the set already covers its display, which is that of its lowest position, or has no position in the
// ring.
std::optional<ZoneSet> expanded(const ZoneSet& set, std::span<const ResolvedZone> ring);

// The next smaller set on the way back to `origin` (its lowest numbered zone when origin is absent or not in
// the set); absent for fewer than two zones.
std::optional<ZoneSet> shrunk(const ZoneSet& set, std::optional<std::size_t> origin,
                              std::span<const ResolvedZone> ring);

} // namespace ZoneSets

} // namespace karto
