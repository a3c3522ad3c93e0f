#pragma once

#include "Karto/Platform/X11/Server/Connection.h"

#include <xcb/xcb.h>

#include <string>
#include <vector>

namespace karto::x11 {

// What a window says of its application: names of its desktop file first, then the window's class and
// instance.
std::vector<std::string> readIdentities(Connection& connection, xcb_window_t window);

} // namespace karto::x11
