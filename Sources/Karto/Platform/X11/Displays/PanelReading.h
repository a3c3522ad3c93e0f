#pragma once
// Windows that take a part of the desktop: those with struts, and panels of the window manager's own.

#include "Karto/Platform/X11/Displays/Struts.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <map>
#include <optional>
#include <set>
#include <span>
#include <vector>

namespace karto::x11 {

struct DesktopWindows {
    std::vector<xcb_window_t> clients;
    // Children of the root window that are no clients of the window manager; its frames of clients are among
    // them.
    std::vector<xcb_window_t> others;
};

struct WindowRequest {
    xcb_window_t window = XCB_WINDOW_NONE;
    xcb_get_property_cookie_t strutPartial{};
    xcb_get_property_cookie_t strut{};
    xcb_get_property_cookie_t type{};

    struct Other {
        xcb_get_window_attributes_cookie_t attributes{};
        xcb_get_geometry_cookie_t geometry{};
    };

    // A client counts also while it is minimized; any other window only while it is shown.
    std::optional<Other> other = std::nullopt;
};

std::vector<WindowRequest> requestWindows(Connection& connection, const DesktopWindows& windows);

struct Panels {
    // With struts, and docks, which may have some later.
    std::vector<xcb_window_t> windows;
    std::vector<Strut> struts;
    // The places of windows without struts that are shown and are no clients.
    std::map<xcb_window_t, Rect> others;
};

Panels awaitPanels(Connection& connection, std::span<const WindowRequest> requests, Size desktop,
                   Deadline deadline);

// The children of the root window that the windows are, or are in.
std::set<xcb_window_t> outermost(Connection& connection, const std::vector<xcb_window_t>& windows,
                                 Deadline deadline);

} // namespace karto::x11
