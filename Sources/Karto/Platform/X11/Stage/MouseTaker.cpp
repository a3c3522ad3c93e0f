#include "Karto/Platform/X11/Stage/MouseTaker.h"

#include <utility>

namespace karto::x11 {

MouseTaker::MouseTaker(Connection& connection, const PixelRect& area)
    : connection_(connection)
    , window_(connection, area) {}

void MouseTaker::place(const PixelRect& area) {
    window_.place(area);
    track_.forget();
}

void MouseTaker::setCursor(xcb_cursor_t cursor) const {
    xcb_change_window_attributes(connection_.get(), id(), XCB_CW_CURSOR, &cursor);
}

void MouseTaker::show() {
    if (!window_.isShown()) {
        track_.forget();
    }
    window_.show();
}

bool MouseTaker::handle(const xcb_generic_event_t& event, ModifierFlags held,
                        std::vector<PointerEvent>& events) {
    switch (eventCode(event)) {
    case XCB_BUTTON_PRESS:
    case XCB_BUTTON_RELEASE:
    case XCB_MOTION_NOTIFY:
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY:
        if (eventAs<xcb_motion_notify_event_t>(event).event != id()) {
            return false;
        }
        break;
    case XCB_UNMAP_NOTIFY:
        if (eventAs<xcb_unmap_notify_event_t>(event).event != id()) {
            return false;
        }
        break;
    default: return false;
    }
    const auto& area = window_.area();
    events = track_.take(
        event, held, {.width = static_cast<double>(area.width), .height = static_cast<double>(area.height)});
    return true;
}

std::optional<Point> MouseTaker::pointer() {
    if (!window_.isShown()) {
        return std::nullopt;
    }
    if (!track_.whereabouts()) {
        if (const auto answer = ask()) {
            track_.learn(*answer);
        }
    }
    const auto known = track_.whereabouts();
    return known ? known->place : std::nullopt;
}

std::optional<PointerTrack::Whereabouts> MouseTaker::ask() const {
    const auto answer = connection_.await<xcb_query_pointer_reply_t>(
        xcb_query_pointer(connection_.get(), connection_.root()), deadlineFromNow());
    if (!answer) {
        return std::nullopt;
    }
    if (answer->child != id()) {
        return PointerTrack::Whereabouts{};
    }
    const auto& area = window_.area();
    return PointerTrack::Whereabouts{.place = Point{.x = static_cast<double>(answer->root_x - area.x),
                                                    .y = static_cast<double>(answer->root_y - area.y)}};
}

} // namespace karto::x11
