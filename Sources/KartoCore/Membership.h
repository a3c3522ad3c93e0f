#pragma once
// Which of several places holds a rectangle: the one that it overlaps most.

#include "KartoCore/Geometry.h"
#include "KartoCore/ZoneResolver.h"

#include <cstddef>
#include <optional>
#include <span>

namespace karto::Membership {

// Index of the candidate with the largest positive overlap, the earlier one on a tie; absent when none
// overlaps.
std::optional<std::size_t> holder(const Rect& rect, std::span<const Rect> candidates);

// The same over the rectangles of resolved zones.
std::optional<std::size_t> zoneIndex(const Rect& window, std::span<const ResolvedZone> zones);

} // namespace karto::Membership
