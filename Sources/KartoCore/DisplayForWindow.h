#pragma once
// The display that a window belongs to.

#include "KartoCore/DisplayInfo.h"

#include <optional>
#include <span>

namespace karto::DisplayForWindow {

// The display that the frame overlaps most, the earlier one on a tie; absent when it overlaps none.
std::optional<DisplayInfo> holding(const Rect& windowFrame, std::span<const DisplayInfo> displays);

} // namespace karto::DisplayForWindow
