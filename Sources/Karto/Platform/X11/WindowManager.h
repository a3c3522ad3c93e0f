#pragma once
// The window manager of the display: whether one that follows EWMH lives, and what it supports.

#include "Karto/Platform/X11/Connection.h"

#include <xcb/xcb.h>

#include <set>

namespace karto::x11 {

class WindowManager {
public:
    explicit WindowManager(Connection& connection);

    // Whether a window manager answers now.
    bool alive();

    // Waits until one does, or the deadline has passed.
    bool awaitAlive(Deadline deadline);

    bool supports(xcb_atom_t feature);

    // Called when the window manager went away, and when one came.
    [[nodiscard]] Registration observeChanges(std::function<void(bool alive)> onChange);

private:
    void noteEvent(const xcb_generic_event_t& event);
    void refresh();

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
