#pragma once
// Configurations of any size.

#include "KartoCore/Config.h"

namespace karto {

inline constexpr int displayCount = 5;

// Valid. The displays share the zones evenly, a third of them pinned; the fifth display stands upright.
KartoConfig configuration(int zones, int displays);

} // namespace karto
