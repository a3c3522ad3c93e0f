#pragma once
// Where a command sends a window on the ring. A ring is ZoneResolver::resolve's result; window frames and the
// rectangles returned are global points. Absent means that there is nowhere to go.

#include "KartoCore/Geometry.h"
#include "KartoCore/ZoneResolver.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace karto {

enum class RingDirection : std::uint8_t { next, previous };

namespace RingNavigator {

// The zone that the window is in: the highest intersection over union of at least 0.5, the earlier on a tie.
std::optional<std::size_t> currentZoneIndex(const Rect& window, std::span<const ResolvedZone> ring);

// The zone with the nearest centre, the earlier on a tie; absent only for an empty ring.
std::optional<std::size_t> nearestZoneIndex(const Rect& window, std::span<const ResolvedZone> ring);

// One step along the ring, wrapping; a window in no zone goes to the nearest one, whatever the direction.
std::optional<Rect> destination(const Rect& window, std::span<const ResolvedZone> ring,
                                RingDirection direction);

// The zone that the window overlaps most.
std::optional<Rect> snapDestination(const Rect& window, std::span<const ResolvedZone> ring);

// The zone with that ring number.
std::optional<Rect> destination(int order, std::span<const ResolvedZone> ring);

} // namespace RingNavigator

} // namespace karto
