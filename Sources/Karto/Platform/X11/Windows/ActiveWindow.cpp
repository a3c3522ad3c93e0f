#include "Karto/Platform/X11/Windows/ActiveWindow.h"

#include "Karto/Platform/X11/Server/RootValue.h"

#include <chrono>
#include <cstdint>
#include <utility>

namespace karto::x11 {

namespace {

// How long a burst of changes of the active window is given to end.
constexpr std::chrono::milliseconds gatherTime{20};

// The window that an event reports a change of.
std::optional<xcb_window_t> subjectOf(const xcb_generic_event_t& event) {
    switch (eventCode(event)) {
    case XCB_CONFIGURE_NOTIFY: return eventAs<xcb_configure_notify_event_t>(event).window;
    case XCB_PROPERTY_NOTIFY: return eventAs<xcb_property_notify_event_t>(event).window;
    case XCB_DESTROY_NOTIFY: return eventAs<xcb_destroy_notify_event_t>(event).window;
    case XCB_MAP_NOTIFY: return eventAs<xcb_map_notify_event_t>(event).window;
    case XCB_UNMAP_NOTIFY: return eventAs<xcb_unmap_notify_event_t>(event).window;
    case XCB_REPARENT_NOTIFY: return eventAs<xcb_reparent_notify_event_t>(event).window;
    default: return std::nullopt;
    }
}

} // namespace

ActiveWindow::ActiveWindow(Connection& connection, Scheduler& scheduler)
    : connection_(connection)
    , scheduler_(scheduler)
    , events_(connection.observe([this](const xcb_generic_event_t& event) { noteEvent(event); })) {}

xcb_window_t ActiveWindow::current() {
    // While an event is handled, every change before it has been handled as well.
    if (!connection_.inTurn() || !active_.isKnown) {
        read();
    }
    return active_.window;
}

std::optional<WindowFacts> ActiveWindow::known(xcb_window_t window) const {
    const bool isCurrent = connection_.inTurn() && window == active_.window;
    return isCurrent ? active_.facts : std::nullopt;
}

void ActiveWindow::learn(xcb_window_t window, const WindowFacts& facts) {
    if (window != active_.window) {
        return;
    }
    active_.facts = facts;
    if (facts.frame != active_.frame) {
        active_.frame = facts.frame;
        active_.frameEvents = facts.frame == XCB_WINDOW_NONE
                                  ? Registration()
                                  : connection_.select(facts.frame, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    }
}

void ActiveWindow::read() {
    const auto told = rootValue(connection_, connection_.atoms().netActiveWindow, XCB_ATOM_WINDOW);
    active_.isKnown = told.has_value();
    const auto window = told.value_or(XCB_WINDOW_NONE);
    if (active_.window != window) {
        left_ = window == XCB_WINDOW_NONE
                    ? Left{.window = active_.window, .events = std::move(active_.events)}
                    : Left{};
        active_.window = window;
        active_.facts.reset();
        active_.events = active_.window == XCB_WINDOW_NONE
                             ? Registration()
                             : connection_.select(active_.window, XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                                                      XCB_EVENT_MASK_PROPERTY_CHANGE);
    }
    if (active_.window != XCB_WINDOW_NONE && !active_.facts) {
        readFacts();
    }
}

void ActiveWindow::readFacts() {
    // A manager may go on naming a window that is gone.
    if (const auto found =
            FactsRequest(connection_, active_.window).receive(connection_, deadlineFromNow())) {
        learn(active_.window, *found);
    } else {
        active_ = {};
    }
}

void ActiveWindow::noteEvent(const xcb_generic_event_t& event) {
    if (changesProperty(event, connection_.root(), {connection_.atoms().netActiveWindow})) {
        read();
        return;
    }
    const auto subject = subjectOf(event);
    if (!subject) {
        return;
    }
    // Another window may come under its number, of which nothing has been selected.
    if (eventCode(event) == XCB_DESTROY_NOTIFY && subject == left_.window) {
        left_ = {};
    }
    if (eventCode(event) == XCB_DESTROY_NOTIFY && subject == active_.window) {
        active_ = {};
        return;
    }
    // The count wraps around.
    const bool isNews =
        active_.facts && static_cast<std::int32_t>(event.full_sequence - active_.facts->sequence) >= 0;
    const bool isOfActive = subject == active_.window || subject == active_.frame;
    const bool isFollowed = subject == active_.window && isNews && active_.facts->follow(event);
    if (isOfActive && isNews && !isFollowed) {
        active_.facts.reset();
        // Read ahead, once for a burst of changes, so that a key pressed later finds it known.
        active_.reading = scheduler_.after(gatherTime, callbacks_.wrap([this] { read(); }));
    }
}

} // namespace karto::x11
