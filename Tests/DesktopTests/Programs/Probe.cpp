// A window of a given kind for others to move: desktop-probe KIND NAME X Y WIDTH HEIGHT.
// It prints a line once the window is mapped and stays until it is closed or killed.

#include "Support/XClient.h"

#include <xcb/xcb_icccm.h>

#include <unistd.h>

#include <array>
#include <cstdio>
#include <span>

namespace {

using karto::Rect;
using karto::desktop::Reply;
using karto::desktop::XClient;

void setSizeHints(const XClient& x, xcb_window_t window, const std::string& kind, const Rect& area) {
    const auto width = int(area.width);
    const auto height = int(area.height);
    xcb_size_hints_t hints{};
    xcb_icccm_size_hints_set_position(&hints, 1, int(area.x), int(area.y));
    if (kind == "stepped") {
        xcb_icccm_size_hints_set_base_size(&hints, 5, 3);
        xcb_icccm_size_hints_set_resize_inc(&hints, 17, 13);
    }
    if (kind == "minimum" || kind == "fixed") {
        xcb_icccm_size_hints_set_min_size(&hints, width, height);
    }
    if (kind == "fixed") {
        xcb_icccm_size_hints_set_max_size(&hints, width, height);
    }
    if (kind == "static") {
        xcb_icccm_size_hints_set_win_gravity(&hints, XCB_GRAVITY_STATIC);
    }
    xcb_icccm_set_wm_normal_hints(x.connection(), window, &hints);
}

void setKind(const XClient& x, xcb_window_t window, const std::string& kind, const Rect& area) {
    if (kind == "borderless" || kind == "shadowed") {
        constexpr std::uint32_t decorationsGiven = 2;
        x.setProperty(window, "_MOTIF_WM_HINTS", x.atom("_MOTIF_WM_HINTS"), {decorationsGiven, 0, 0, 0, 0});
    }
    if (kind == "shadowed") {
        x.setProperty(window, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {4, 4, 4, 4});
    }
    const std::string type = kind == "panel" ? "DOCK" : kind == "dialog" ? "DIALOG" : "NORMAL";
    x.setProperty(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {x.atom("_NET_WM_WINDOW_TYPE_" + type)});
    if (kind == "panel") {
        const auto first = std::uint32_t(area.x);
        const auto last = std::uint32_t(area.maxX()) - 1;
        // Struts count from the edge of the whole screen, not from that of the display.
        const Reply<xcb_get_geometry_reply_t> root(
            xcb_get_geometry_reply(x.connection(), xcb_get_geometry(x.connection(), x.root()), nullptr));
        const auto bottom = root->height - std::uint32_t(area.y);
        x.setProperty(window, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL,
                      {0, 0, 0, bottom, 0, 0, 0, 0, 0, 0, first, last});
    }
}

// A number of this process's own: the server hands the numbers of a client that ended to the next one, and a
// window manager may still be busy with the old window.
xcb_window_t newWindowNumber(const XClient& x) {
    for (int i = getpid() % 10'000; i > 0; --i) {
        xcb_generate_id(x.connection());
    }
    return xcb_generate_id(x.connection());
}

xcb_window_t createWindow(const XClient& x, const std::string& name, const Rect& area) {
    constexpr std::uint32_t slate = 0x1D2B36;
    const std::array<std::uint32_t, 2> values{slate, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    const xcb_window_t window = newWindowNumber(x);
    xcb_create_window(x.connection(), XCB_COPY_FROM_PARENT, window, x.root(), std::int16_t(area.x),
                      std::int16_t(area.y), std::uint16_t(area.width), std::uint16_t(area.height), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values.data());
    x.setText(window, "WM_NAME", name);
    x.setText(window, "WM_CLASS", name + '\0' + name + '\0');
    x.setProperty(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {std::uint32_t(getpid())});
    x.setProperty(window, "WM_PROTOCOLS", XCB_ATOM_ATOM, {x.atom("WM_DELETE_WINDOW")});
    return window;
}

// Until the window is closed, the connection ends, or a vanishing window is resized.
void serve(const XClient& x, const std::string& kind, const Rect& area) {
    while (const Reply<xcb_generic_event_t> event{xcb_wait_for_event(x.connection())}) {
        const auto type = event->response_type & 0x7FU;
        if (type == XCB_CLIENT_MESSAGE) {
            return;
        }
        if (type == XCB_CONFIGURE_NOTIFY && kind == "vanishing") {
            const auto* now = reinterpret_cast<const xcb_configure_notify_event_t*>(event.get());
            if (now->width != std::uint16_t(area.width)) {
                return;
            }
        }
    }
}

} // namespace

int main(int count, char** values) {
    const std::span arguments(values, std::size_t(count));
    if (arguments.size() != 7) {
        std::fputs("desktop-probe KIND NAME X Y WIDTH HEIGHT\n", stderr);
        return 2;
    }
    const std::string kind = arguments[1];
    const std::string name = arguments[2];
    const Rect area{.x = std::stod(arguments[3]),
                    .y = std::stod(arguments[4]),
                    .width = std::stod(arguments[5]),
                    .height = std::stod(arguments[6])};
    const XClient x("");
    const xcb_window_t window = createWindow(x, name, area);
    setSizeHints(x, window, kind, area);
    setKind(x, window, kind, area);
    xcb_map_window(x.connection(), window);
    x.settle();
    std::puts("mapped");
    std::fflush(stdout);
    serve(x, kind, area);
    return 0;
}
