#pragma once
// A connection to the X server and the few questions that the latency programs ask it.
// Benchmarks have nobody to recover for: what goes wrong is thrown and ends the program with its reason.

#include "Karto/Platform/X11/Server/Reply.h"

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace karto::bench {

using Clock = std::chrono::steady_clock;

// A rectangle of whole pixels on the root window.
struct Box {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    // From "X,Y,WIDTH,HEIGHT".
    static Box parse(std::string_view text);

    bool operator==(const Box&) const = default;
};

// What the window manager adds around a client.
struct Extents {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
};

class XServer {
public:
    // The server that DISPLAY names.
    XServer();

    [[nodiscard]] xcb_connection_t* connection() const { return connection_.get(); }

    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }

    [[nodiscard]] xcb_window_t root() const { return screen_->root; }

    [[nodiscard]] xcb_atom_t atom(std::string_view name) const;

    // A key that gives the symbol without modifiers. A Latin letter or digit is its own symbol.
    [[nodiscard]] xcb_keycode_t keyCode(xcb_keysym_t symbol) const;

    // What _NET_ACTIVE_WINDOW names; no window while none is active.
    [[nodiscard]] xcb_window_t activeWindow() const;

    // What _NET_CLIENT_LIST names.
    [[nodiscard]] std::vector<xcb_window_t> managedWindows() const;

    // Absent until the window manager has framed the window.
    [[nodiscard]] std::optional<Extents> frameExtents(xcb_window_t window) const;

    // The next event; null when none came before the deadline.
    [[nodiscard]] x11::Event nextEvent(Clock::time_point deadline) const;

    // Returns once the server has handled everything sent so far.
    void sync() const;

private:
    // The numbers of a property; empty when it is not set.
    [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window, xcb_atom_t property) const;

    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    const xcb_screen_t* screen_ = nullptr;
    xcb_atom_t activeWindowAtom_ = XCB_ATOM_NONE;
    xcb_atom_t clientListAtom_ = XCB_ATOM_NONE;
    xcb_atom_t frameExtentsAtom_ = XCB_ATOM_NONE;
};

} // namespace karto::bench
