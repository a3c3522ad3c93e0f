#include "MoveLatencyWindow.h"

#include <array>
#include <stdexcept>
#include <string_view>

namespace karto::bench {
namespace {

constexpr auto startBound = std::chrono::seconds(10);
constexpr auto quietSpan = std::chrono::milliseconds(30);
constexpr auto quietBound = std::chrono::seconds(2);

void watch(const XServer& server, xcb_window_t window, std::uint32_t events) {
    xcb_change_window_attributes(server.connection(), window, XCB_CW_EVENT_MASK, &events);
}

// The ancestor of the window that is a child of the root.
xcb_window_t topLevel(const XServer& server, xcb_window_t window) {
    while (true) {
        const x11::Reply<xcb_query_tree_reply_t> tree{
            xcb_query_tree_reply(server.connection(), xcb_query_tree(server.connection(), window), nullptr)};
        if (!tree)
            throw std::runtime_error("the window went away");
        if (tree->parent == tree->root)
            return window;
        window = tree->parent;
    }
}

Box geometry(const XServer& server, xcb_window_t window) {
    const x11::Reply<xcb_get_geometry_reply_t> reply{
        xcb_get_geometry_reply(server.connection(), xcb_get_geometry(server.connection(), window), nullptr)};
    if (!reply)
        throw std::runtime_error("the window went away");
    return {.x = reply->x, .y = reply->y, .width = reply->width, .height = reply->height};
}

} // namespace

TargetWindow::TargetWindow(const XServer& server)
    : server_(server) {
    map();
    waitForFrame();
    frameWindow_ = topLevel(server, client_);
    watch(server, frameWindow_, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    server.sync();
    waitUntilQuiet();
    frame_ = geometry(server, frameWindow_);
    const Box client = geometry(server, client_);
    clientWidth_ = client.width;
    clientHeight_ = client.height;
}

bool TargetWindow::fits(const Box& zone) const {
    return frame_ == zone && clientWidth_ == zone.width - extents_.left - extents_.right &&
           clientHeight_ == zone.height - extents_.top - extents_.bottom;
}

std::optional<Clock::time_point> TargetWindow::waitUntilIn(const Box& zone, Clock::duration bound) {
    const auto deadline = Clock::now() + bound;
    while (const auto event = server_.nextEvent(deadline)) {
        const auto arrival = Clock::now();
        take(*event);
        if (fits(zone))
            return arrival;
    }
    return std::nullopt;
}

void TargetWindow::waitUntilQuiet() {
    const auto bound = Clock::now() + quietBound;
    while (const auto event = server_.nextEvent(Clock::now() + quietSpan)) {
        take(*event);
        if (Clock::now() > bound)
            throw std::runtime_error("the window never comes to rest");
    }
}

void TargetWindow::map() {
    constexpr std::string_view title = "Move latency";
    xcb_connection_t* const connection = server_.connection();
    client_ = xcb_generate_id(connection);
    const std::array<std::uint32_t, 2> values{server_.screen().white_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, client_, server_.root(), 100, 100, 640, 480, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values.data());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, client_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(title.size()), title.data());
    xcb_map_window(connection, client_);
}

void TargetWindow::waitForFrame() {
    watch(server_, server_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    const auto deadline = Clock::now() + startBound;
    auto extents = server_.frameExtents(client_);
    while (!extents || server_.activeWindow() != client_) {
        if (!server_.nextEvent(deadline))
            throw std::runtime_error("no window manager took the window in");
        extents = server_.frameExtents(client_);
    }
    extents_ = *extents;
    watch(server_, server_.root(), XCB_EVENT_MASK_NO_EVENT);
}

void TargetWindow::take(const xcb_generic_event_t& event) {
    if (x11::eventCode(event) != XCB_CONFIGURE_NOTIFY)
        return;
    const auto& configured = x11::eventAs<xcb_configure_notify_event_t>(event);
    if (configured.window == frameWindow_)
        frame_ = {
            .x = configured.x, .y = configured.y, .width = configured.width, .height = configured.height};
    if (configured.window == client_) {
        clientWidth_ = configured.width;
        clientHeight_ = configured.height;
    }
}

} // namespace karto::bench
