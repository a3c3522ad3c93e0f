#pragma once
// Who owns a selection of the screen, by which programs of a kind announce themselves: a compositor, a tray.

#include "Karto/Platform/X11/Server/Connection.h"

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <functional>
#include <string_view>

namespace karto::x11 {

class SelectionOwner {
public:
    // prefix: the selection's name without the number of the screen. The server must know the XFixes
    // extension.
    SelectionOwner(Connection& connection, std::string_view prefix, std::function<void()> onChange);

    [[nodiscard]] xcb_atom_t selection() const { return selection_; }

    // NONE without one.
    [[nodiscard]] xcb_window_t window() const { return owner_; }

private:
    void note(const xcb_xfixes_selection_notify_event_t& news);

    xcb_atom_t selection_ = XCB_ATOM_NONE;
    xcb_window_t owner_ = XCB_WINDOW_NONE;
    std::function<void()> onChange_;
    Registration events_;
};

} // namespace karto::x11
