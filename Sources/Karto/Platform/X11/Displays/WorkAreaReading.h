#pragma once
// What the window manager declares of the current desktop, requested in the flights of a look at the screens.

#include "Karto/Platform/X11/Server/Connection.h"
#include "KartoCore/Geometry.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace karto::x11 {

struct CurrentDesktop {
    std::uint32_t number = 0;
    // The area that it declares; absent when it declares none that makes sense.
    std::optional<Rect> workArea;
};

struct CurrentDesktopRequest {
    xcb_get_property_cookie_t number{};
    xcb_get_property_cookie_t size{};
    xcb_get_property_cookie_t workAreas{};
};

CurrentDesktopRequest requestCurrentDesktop(Connection& connection);

// Absent when the manager speaks of a desktop of another size: it has not heard of a change yet, or means one
// that is larger than the screens.
std::optional<CurrentDesktop> awaitCurrentDesktop(Connection& connection,
                                                  const CurrentDesktopRequest& request, Size size,
                                                  Deadline deadline);

// The names of the properties with the areas of single monitors, by the desktop that is part of them.
using AreaAtoms = std::map<std::uint32_t, xcb_atom_t>;

// Waits for the server at the first sight of a desktop only. Absent for a desktop that no person could reach.
std::optional<xcb_get_property_cookie_t> requestAreasByMonitor(Connection& connection, std::uint32_t desktop,
                                                               AreaAtoms& known);

std::vector<Rect> awaitAreasByMonitor(Connection& connection, xcb_get_property_cookie_t request, Size desktop,
                                      Deadline deadline);

} // namespace karto::x11
