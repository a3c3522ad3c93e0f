#include "Karto/Platform/X11/Stage/PointerTrack.h"

#include "Karto/Platform/X11/Server/Reply.h"

#include <utility>

namespace karto::x11 {

namespace {

constexpr std::uint8_t mainButton = XCB_BUTTON_INDEX_1;

bool isWithin(Point place, Size size) {
    return place.x >= 0 && place.y >= 0 && place.x < size.width && place.y < size.height;
}

} // namespace

std::vector<PointerEvent> PointerTrack::take(const xcb_generic_event_t& event, ModifierFlags held,
                                             Size size) {
    held_ = held;
    const int code = eventCode(event);
    if (code == XCB_UNMAP_NOTIFY) {
        hidden();
        return std::exchange(events_, {});
    }
    // All events of the pointer begin alike.
    const auto& motion = eventAs<xcb_motion_notify_event_t>(event);
    place_ = {.x = static_cast<double>(motion.event_x), .y = static_cast<double>(motion.event_y)};
    const bool isMainButton = motion.detail == mainButton;
    const bool isDown = (motion.state & XCB_BUTTON_MASK_1) != 0;
    const auto crossingMode = eventAs<xcb_enter_notify_event_t>(event).mode;
    switch (code) {
    case XCB_BUTTON_PRESS: isMainButton ? pressed() : void(); break;
    case XCB_BUTTON_RELEASE: isMainButton ? released() : void(); break;
    case XCB_MOTION_NOTIFY:
    case XCB_ENTER_NOTIFY: moved(isDown, size); break;
    case XCB_LEAVE_NOTIFY: left(crossingMode); break;
    default: break;
    }
    return std::exchange(events_, {});
}

std::vector<PointerEvent> PointerTrack::takeMovement() {
    tellMovement();
    return std::exchange(events_, {});
}

void PointerTrack::moved(bool isDown, Size size) {
    if (isPressed_ && !isDown) {
        endGesture(PointerAction::cancelled);
    }
    // Another button may be down, too, and keep the pointer's events here.
    if (!isPressed_ && !isWithin(place_, size)) {
        leave();
        return;
    }
    whereabouts_ = Whereabouts{.place = place_};
    movement_ = {
        .action = isPressed_ ? PointerAction::dragged : PointerAction::moved, .place = place_, .held = held_};
}

void PointerTrack::pressed() {
    if (isPressed_) {
        endGesture(PointerAction::cancelled);
    }
    tellMovement();
    whereabouts_ = Whereabouts{.place = place_};
    isPressed_ = isInside_ = true;
    tell(PointerAction::pressed);
}

void PointerTrack::released() {
    if (isPressed_) {
        endGesture(PointerAction::released);
    }
}

void PointerTrack::left(std::uint8_t mode) {
    // The release comes first, when there is one.
    const bool isTakenAway = mode != XCB_NOTIFY_MODE_NORMAL;
    if (isPressed_ && !isTakenAway) {
        return;
    }
    if (isPressed_) {
        endGesture(PointerAction::cancelled);
    }
    leave();
}

void PointerTrack::hidden() {
    if (isPressed_) {
        endGesture(PointerAction::cancelled);
    }
    leave();
    whereabouts_.reset();
}

void PointerTrack::endGesture(PointerAction how) {
    tellMovement();
    isPressed_ = false;
    tell(how);
}

void PointerTrack::leave() {
    movement_.reset();
    whereabouts_ = Whereabouts{};
    if (std::exchange(isInside_, false)) {
        tell(PointerAction::left);
    }
}

void PointerTrack::tellMovement() {
    if (const auto movement = std::exchange(movement_, std::nullopt)) {
        isInside_ = true;
        events_.push_back(*movement);
    }
}

void PointerTrack::tell(PointerAction action) {
    events_.push_back({.action = action, .place = place_, .held = held_});
}

} // namespace karto::x11
