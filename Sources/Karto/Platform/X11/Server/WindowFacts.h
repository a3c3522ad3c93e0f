#pragma once
// All that is read of a window, in one flight of requests.

#include "Karto/Platform/X11/Server/Connection.h"
#include "KartoCore/Geometry.h"

#include <xcb/res.h>
#include <xcb/xcb.h>
#include <xcb/xcb_icccm.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace karto::x11 {

// Of a length: beyond what any screen shows.
inline constexpr int mostPixels = 0x7FFF;

struct Insets {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;

    bool operator==(const Insets&) const = default;
};

struct WindowFacts {
    // The request that they answer, in the server's count: what an event with a lower number tells, they
    // include.
    std::uint32_t sequence = 0;
    // The client area, X pixels of the root.
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    // What the window manager draws around it.
    Insets decoration;
    // The window that it is drawn in, where nothing else tells how much it is; NONE elsewhere.
    xcb_window_t frame = XCB_WINDOW_NONE;
    // What the client itself keeps invisible at its edges.
    Insets shadow;
    xcb_size_hints_t sizeHints{};

    bool isManaged = false;
    bool isFullscreen = false;
    bool isMaximized = false;
    bool isHidden = false;
    bool isShaded = false;
    bool skipsTaskbar = false;
    bool isTransient = false;
    // NONE when the window names no type.
    xcb_atom_t type = XCB_ATOM_NONE;
    // Absent when it is on all virtual desktops or the manager has none.
    std::optional<std::uint32_t> desktop;

    std::int32_t pid = 0;
    xcb_window_t clientLeader = XCB_WINDOW_NONE;
    // The class; empty when it has none.
    std::string className;
    std::string title;

    // What a person sees: with decoration, without the invisible edges. Global points.
    [[nodiscard]] Rect visibleFrame() const;

    // Takes over where the window is from an event that tells it. False, and nothing is taken over, for any
    // other event about the window.
    bool follow(const xcb_generic_event_t& event);
};

class FactsRequest {
public:
    FactsRequest(const Connection& connection, xcb_window_t window);

    // Absent when the window is gone or the deadline passes first. To be called once.
    [[nodiscard]] std::optional<WindowFacts> receive(Connection& connection, Deadline deadline) const;

private:
    enum Property : std::uint8_t {
        frameExtents,
        gtkFrameExtents,
        netState,
        icccmState,
        type,
        desktop,
        normalHints,
        transientFor,
        pid,
        leader,
        className,
        netName,
        name,
        count,
    };

    xcb_window_t window_;
    xcb_get_geometry_cookie_t geometry_{};
    xcb_translate_coordinates_cookie_t origin_{};
    std::array<xcb_get_property_cookie_t, count> properties_{};
    std::optional<xcb_res_query_client_ids_cookie_t> clientIds_;
};

} // namespace karto::x11
