#pragma once
// The order in which a map of the displays draws them.

#include "KartoCore/DisplayInfo.h"

#include <span>
#include <vector>

namespace karto::DisplayMapOrdering {

// Left to right, then top to bottom; displays at one origin keep their order.
std::vector<DisplayInfo> sorted(std::span<const DisplayInfo> displays);

} // namespace karto::DisplayMapOrdering
