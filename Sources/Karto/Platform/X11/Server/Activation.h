#pragma once
// Making a window the active one.

#include "Karto/Platform/X11/Server/Connection.h"

namespace karto::x11 {

// Asks the window manager, in the way that managers grant although the person has just been busy elsewhere.
void activate(Connection& connection, xcb_window_t window);

} // namespace karto::x11
