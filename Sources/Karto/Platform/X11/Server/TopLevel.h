#pragma once
// Which child of the root holds a window: the frame that a window manager drew around it, or itself.

#include "Karto/Platform/X11/Server/Connection.h"

#include <xcb/xcb.h>

#include <optional>

namespace karto::x11 {

// Absent when the window is gone or the deadline passes first.
std::optional<xcb_window_t> topLevelOf(Connection& connection, xcb_window_t window, Deadline deadline);

} // namespace karto::x11
