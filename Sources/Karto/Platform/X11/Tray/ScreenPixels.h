#pragma once
// Pixels read back from the screen, for what has to fit in with what is there.

#include "Karto/Platform/X11/Server/Connection.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/OverlayAppearance.h"

#include <cstdint>
#include <span>
#include <vector>

namespace karto::x11 {

// 0x00RRGGBB each, by rows; empty when the area is not on the screen or the screen has other pixels.
std::vector<std::uint32_t> readPixels(Connection& connection, xcb_window_t window, const PixelRect& area);

// The colour of symbols that stand out from most of the pixels; light ones when there are none.
RGBColor inkOn(std::span<const std::uint32_t> pixels);

} // namespace karto::x11
