#pragma once
// Whether a compositing manager blends the windows of the display.

#include "Karto/Platform/X11/Connection.h"

#include <xcb/xcb.h>

#include <functional>

namespace karto::x11 {

class CompositorWatch {
public:
    // The server must know the XFixes extension.
    CompositorWatch(Connection& connection, std::function<void()> onChange);

    [[nodiscard]] bool isRunning() const { return isRunning_; }

private:
    // Keeps what is known when the server does not answer.
    void read();

    Connection& connection_;
    // Owned by the compositor as long as it lives.
    xcb_atom_t selection_ = XCB_ATOM_NONE;
    bool isRunning_ = false;
    std::function<void()> onChange_;
    Registration events_;
};

} // namespace karto::x11
