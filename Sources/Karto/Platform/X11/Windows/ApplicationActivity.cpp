#include "Karto/Platform/X11/Windows/ApplicationActivity.h"

#include <chrono>
#include <utility>

namespace karto::x11 {

namespace {

// A shortcut that is pressed takes the focus away for as long as its key is handled.
constexpr std::chrono::milliseconds shortestAbsence{100};

} // namespace

ApplicationActivity::ApplicationActivity(Connection& connection, karto::Accessibility& accessibility,
                                         Scheduler& scheduler, pid_t ownProcess)
    : connection_(connection)
    , accessibility_(accessibility)
    , scheduler_(scheduler)
    , ownProcess_(ownProcess)
    , rootEvents_(connection.select(connection.root(), XCB_EVENT_MASK_PROPERTY_CHANGE))
    , events_(connection.observe([this](const xcb_generic_event_t& event) { note(event); })) {
    isActive_ = readActive();
}

Registration ApplicationActivity::observe(std::function<void(bool)> onChange) {
    return observers_.add(std::move(onChange));
}

void ApplicationActivity::note(const xcb_generic_event_t& event) {
    if (!changesProperty(event, connection_.root(), {connection_.atoms().netActiveWindow})) {
        return;
    }
    if (readActive()) {
        leaving_.reset();
        change(true);
    } else if (isActive_ && !leaving_) {
        leaving_ = scheduler_.after(shortestAbsence, callbacks_.wrap([this] {
            leaving_.reset();
            change(readActive());
        }));
    }
}

bool ApplicationActivity::readActive() const {
    const auto frontmost = accessibility_.frontmostApplication();
    return frontmost == ownProcess_;
}

void ApplicationActivity::change(bool isActive) {
    if (isActive != isActive_) {
        isActive_ = isActive;
        observers_.notify(isActive);
    }
}

} // namespace karto::x11
