#pragma once
// Making a window the active one.

#include "Karto/Platform/X11/Server/Connection.h"

namespace karto::x11 {

// Asks the window manager, in the way that managers grant although the person has just been busy elsewhere.
// The window was made over the toolkit's connection: first the server carries out all that was asked there,
// so that the manager has heard of the window.
void activate(Connection& connection, xcb_connection_t* toolkit, xcb_window_t window);
// For a window that the manager knows.
void activate(Connection& connection, xcb_window_t window);

} // namespace karto::x11
