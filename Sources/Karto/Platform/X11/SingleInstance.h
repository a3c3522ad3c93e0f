#pragma once
// One Karto a display: a second one would find every shortcut taken.

#include "Karto/Platform/X11/Connection.h"

namespace karto::x11 {

// Makes this program the display's Karto, for as long as the connection lasts; false when there is one
// already.
bool claimDisplay(Connection& connection);

} // namespace karto::x11
