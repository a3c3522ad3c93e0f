#pragma once
// X servers that show a part of another desktop's windows only.

#include "Karto/Platform/X11/Server/Connection.h"

namespace karto::x11 {

// Whether the server runs inside a Wayland session, whose own windows no X client sees.
bool runsInsideWayland(Connection& connection);

} // namespace karto::x11
