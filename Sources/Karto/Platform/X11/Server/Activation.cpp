#include "Karto/Platform/X11/Server/Activation.h"

#include "Karto/Platform/X11/Server/RootValue.h"
#include "Karto/Platform/X11/Server/WindowManager.h"

#include <chrono>

namespace karto::x11 {

namespace {

constexpr int attempts = 3;
constexpr std::chrono::milliseconds patience{300};

xcb_timestamp_t serverTime(Connection& connection) {
    // Appending nothing to a property of one's own makes the server report its time.
    const auto deadline = deadlineFromNow();
    const xcb_window_t window = xcb_generate_id(connection.get());
    xcb_create_window(connection.get(), 0, window, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    const auto events = connection.select(window, XCB_EVENT_MASK_PROPERTY_CHANGE);
    xcb_change_property(connection.get(), XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        0, nullptr);
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    auto mark = connection.eventMark();
    while (time == XCB_CURRENT_TIME && std::chrono::steady_clock::now() < deadline) {
        const auto fresh = connection.awaitEvents(mark, deadline);
        mark += fresh.size();
        for (const auto* event : fresh) {
            if (eventCode(*event) == XCB_PROPERTY_NOTIFY &&
                eventAs<xcb_property_notify_event_t>(*event).window == window) {
                time = eventAs<xcb_property_notify_event_t>(*event).time;
            }
        }
    }
    xcb_destroy_window(connection.get(), window);
    return time;
}

std::uint32_t activeWindow(Connection& connection) {
    return rootValue(connection, connection.atoms().netActiveWindow, XCB_ATOM_WINDOW)
        .value_or(XCB_WINDOW_NONE);
}

} // namespace

void activate(Connection& connection, xcb_window_t window) {
    connection.tellWindowManager(window, connection.atoms().netActiveWindow,
                                 {sourceIsPager, serverTime(connection), XCB_WINDOW_NONE, 0, 0});
    connection.flush();
}

void ToolkitActivation::activate(xcb_window_t window) {
    const Reply<xcb_get_input_focus_reply_t> roundTrip(
        xcb_get_input_focus_reply(toolkit_, xcb_get_input_focus(toolkit_), nullptr));
    asking_ = {.selection = connection_.select(window, XCB_EVENT_MASK_FOCUS_CHANGE),
               .events = connection_.observe([this, window](const xcb_generic_event_t& event) {
                   if (eventCode(event) == XCB_FOCUS_IN &&
                       eventAs<xcb_focus_in_event_t>(event).event == window) {
                       asking_ = {};
                   }
               }),
               .again = {}};
    ask(window, activeWindow(connection_), attempts);
}

void ToolkitActivation::ask(xcb_window_t window, std::uint32_t activeBefore, int attemptsLeft) {
    x11::activate(connection_, window);
    if (attemptsLeft == 1 || window == activeBefore) {
        asking_ = {};
        return;
    }
    asking_.again = scheduler_.after(patience, callbacks_.wrap([=, this] {
        if (activeWindow(connection_) == activeBefore) {
            ask(window, activeBefore, attemptsLeft - 1);
        } else {
            asking_ = {};
        }
    }));
}

} // namespace karto::x11
