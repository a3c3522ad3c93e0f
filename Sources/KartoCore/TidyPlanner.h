#pragma once
// Deals the windows of a display out over its zones.

#include "KartoCore/Geometry.h"
#include "KartoCore/ZoneResolver.h"

#include <cstddef>
#include <span>
#include <vector>

namespace karto::TidyPlanner {

// One rectangle a window: the zones in the given order, again and again. Empty without windows or zones.
std::vector<Rect> plan(std::size_t windowCount, std::span<const ResolvedZone> zones);

} // namespace karto::TidyPlanner
