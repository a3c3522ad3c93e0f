#pragma once
// The person's own cursors: of the theme and the size that the desktop has chosen, and the server's plain
// ones where the theme lacks them.

#include "Karto/Platform/PointerEvent.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <xcb/xcb.h>

#include <functional>
#include <map>

namespace karto::x11 {

class Cursors {
public:
    // onChange: the desktop may have chosen others, and those handed out before will be gone.
    Cursors(Connection& connection, std::function<void()> onChange);
    Cursors(const Cursors&) = delete;
    Cursors& operator=(const Cursors&) = delete;
    Cursors(Cursors&&) = delete;
    Cursors& operator=(Cursors&&) = delete;

    ~Cursors() { clear(); }

    // None, which is whatever the desktop shows, when the server does not answer.
    xcb_cursor_t find(Cursor cursor);

private:
    void load();
    void clear();

    Connection& connection_;
    // Read when first needed.
    std::map<Cursor, xcb_cursor_t> known_;
    Registration rootEvents_;
    Registration events_;
};

} // namespace karto::x11
