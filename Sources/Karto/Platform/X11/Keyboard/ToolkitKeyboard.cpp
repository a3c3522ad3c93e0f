#include "Karto/Platform/X11/Keyboard/ToolkitKeyboard.h"

namespace karto::x11 {

ToolkitKeyboard::ToolkitKeyboard(Connection& connection, xcb_connection_t* toolkit)
    : connection_(connection)
    , toolkit_(toolkit)
    , xkb_(Xkb::use(connection)) {
    focusMoved(XCB_WINDOW_NONE);
}

void ToolkitKeyboard::focusMoved(xcb_window_t window) {
    if (!xkb_) {
        return;
    }
    const bool hears = window != XCB_WINDOW_NONE;
    xkb_->on(toolkit_).selectState(hears ? Xkb::wholeState : Xkb::lockedState);
    xcb_flush(toolkit_);
    if (!hears) {
        return;
    }
    const auto request = xcb_xkb_get_state(connection_.get(), coreKeyboard);
    if (const auto state = connection_.await<xcb_xkb_get_state_reply_t>(request, deadlineFromNow())) {
        xkb_->tellState(window, *state);
        connection_.flush();
    }
}

} // namespace karto::x11
