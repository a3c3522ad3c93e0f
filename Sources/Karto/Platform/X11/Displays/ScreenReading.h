#pragma once
// One look at the server's monitors and at what panels and the window manager leave of them.

#include "Karto/Platform/Screens.h"
#include "Karto/Platform/X11/Displays/WorkAreaReading.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <optional>
#include <vector>

namespace karto::x11 {

struct ScreenReading {
    // The primary one first; screens that show the same appear once. Empty while all are switched off.
    std::vector<Screen> screens;
    // The windows that keep a part of the desktop for themselves, and docks, which may do so later.
    std::vector<xcb_window_t> panels;
};

// Absent when the server does not answer in time. The whole desktop is one screen for a server that knows no
// monitors, as one without RandR, or with RandR before 1.5.
std::optional<ScreenReading> readScreens(Connection& connection, bool hasRandr, AreaAtoms& areaAtoms);

} // namespace karto::x11
