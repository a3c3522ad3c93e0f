#pragma once
// Whether a compositing manager blends the windows of the display.

#include "Karto/Platform/X11/Server/Connection.h"

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <functional>

namespace karto::x11 {

class CompositorWatch {
public:
    // The server must know the XFixes extension.
    CompositorWatch(Connection& connection, std::function<void()> onChange);

    [[nodiscard]] bool isRunning() const { return isRunning_; }

private:
    void note(const xcb_xfixes_selection_notify_event_t& news);

    // Owned by the compositor as long as it lives.
    xcb_atom_t selection_ = XCB_ATOM_NONE;
    bool isRunning_ = false;
    std::function<void()> onChange_;
    Registration events_;
};

} // namespace karto::x11
