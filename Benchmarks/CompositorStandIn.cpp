#include "CompositorStandIn.h"

#include <xcb/composite.h>

#include <chrono>
#include <thread>

namespace karto::bench {

void standInForCompositor(const XServer& server) {
    xcb_composite_query_version_unchecked(server.connection(), 0, 4);
    xcb_composite_redirect_subwindows(server.connection(), server.root(), XCB_COMPOSITE_REDIRECT_MANUAL);
    const xcb_window_t owner = xcb_generate_id(server.connection());
    xcb_create_window(server.connection(), 0, owner, server.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(server.connection(), owner, server.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    server.sync();
    // Until everybody has noticed.
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
}

} // namespace karto::bench
