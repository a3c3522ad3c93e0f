#pragma once
// What the toolkit hears of the keyboard on its own connection to the server.
// It asks for every change of the keyboard's state, and so would wake up for each modifier and mouse button
// that a person presses anywhere. Here it hears of those while one of its windows has the keyboard, and is
// told then how they stand. Locks and the choice of layout it always hears of: its menus take keys without
// having the keyboard.

#include "Karto/Platform/X11/Keyboard/Xkb.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <xcb/xcb.h>

#include <optional>

namespace karto::x11 {

class ToolkitKeyboard {
public:
    // The toolkit's connection outlives this object. No window of its has the keyboard yet.
    ToolkitKeyboard(Connection& connection, xcb_connection_t* toolkit);

    // One of the toolkit's windows has the keyboard from here on, or with NONE none of them.
    void focusMoved(xcb_window_t window);

private:
    Connection& connection_;
    xcb_connection_t* toolkit_;
    // Absent without the keyboard extension.
    std::optional<Xkb> xkb_;
};

} // namespace karto::x11
