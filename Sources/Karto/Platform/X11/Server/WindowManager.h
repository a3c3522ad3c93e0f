#pragma once
// The window manager of the display: whether one that follows EWMH lives, and what it supports.

#include "Karto/Platform/X11/Server/Connection.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace karto::x11 {

// Of a request to the manager: that it comes from the person, through a tool of theirs, and not from the
// window's own program.
inline constexpr std::uint32_t sourceIsPager = 2;

class WindowManager {
public:
    explicit WindowManager(Connection& connection);

    // Whether a window manager answers now.
    bool alive();

    // Waits until one does, or the deadline has passed.
    bool awaitAlive(Deadline deadline);

    bool supports(xcb_atom_t feature);

    // What it calls itself; empty when there is none.
    std::string name();

    // Whether, where it composites too, it paints windows that it does not manage in the order in which they
    // were shown, whatever their order is now.
    bool paintsByAge();

    // Called when the window manager went away, and when one came.
    [[nodiscard]] Registration observeChanges(std::function<void(bool alive)> onChange);

private:
    struct Reading {
        xcb_window_t checkWindow = XCB_WINDOW_NONE;
        std::vector<xcb_atom_t> features;
    };

    [[nodiscard]] bool concernsManager(const xcb_generic_event_t& event) const;
    void refresh();
    // Absent when the server does not answer in time.
    std::optional<Reading> read();

    Connection& connection_;
    // The window that a living manager keeps; none when there is no manager.
    xcb_window_t checkWindow_ = XCB_WINDOW_NONE;
    std::set<xcb_atom_t> supported_;
    bool stale_ = true;
    std::function<void(bool)> onChange_;
    Registration rootEvents_;
    Registration checkWindowEvents_;
    Registration observation_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
