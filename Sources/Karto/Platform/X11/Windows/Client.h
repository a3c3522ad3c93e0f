#pragma once
// A window of the manager's list and the application that it belongs to.

#include "Karto/Platform/X11/Server/WindowFacts.h"

#include <xcb/xcb.h>

#include <cstdint>

namespace karto::x11 {

struct Client {
    xcb_window_t window = XCB_WINDOW_NONE;
    WindowFacts facts;
};

// Its process identifier; a negative number of its own for an application whose windows name no process.
std::int32_t applicationNumber(xcb_window_t window, const WindowFacts& facts);

inline std::int32_t applicationNumber(const Client& client) {
    return applicationNumber(client.window, client.facts);
}

} // namespace karto::x11
