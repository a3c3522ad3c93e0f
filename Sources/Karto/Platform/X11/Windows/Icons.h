#pragma once
// The icons that windows carry.

#include "Karto/Platform/Accessibility.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <span>

namespace karto::x11 {

// The smallest icon of at least the preferred size among those in an icon property (width, height, pixels,
// one after the other), else the largest; absent when it holds none whole.
std::optional<Image> bestIcon(std::span<const std::uint32_t> property);

std::optional<Image> readIcon(Connection& connection, xcb_window_t window);

} // namespace karto::x11
