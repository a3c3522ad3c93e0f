#include "Karto/Platform/X11/WindowManager.h"

#include <utility>

namespace karto::x11 {

namespace {

constexpr std::uint32_t longestFeatureList = 1024;

} // namespace

WindowManager::WindowManager(Connection& connection)
    : connection_(connection)
    , rootEvents_(connection.select(connection.root(), XCB_EVENT_MASK_PROPERTY_CHANGE))
    , observation_(connection.observe([this](const xcb_generic_event_t& event) { noteEvent(event); })) {}

bool WindowManager::alive() {
    if (stale_) {
        refresh();
    }
    return checkWindow_ != XCB_WINDOW_NONE;
}

bool WindowManager::awaitAlive(Deadline deadline) {
    while (!alive() && std::chrono::steady_clock::now() < deadline) {
        connection_.awaitEvents(deadline);
        stale_ = true;
    }
    return alive();
}

bool WindowManager::supports(xcb_atom_t feature) { return alive() && supported_.contains(feature); }

Registration WindowManager::observeChanges(std::function<void(bool)> onChange) {
    onChange_ = std::move(onChange);
    return Registration(callbacks_.wrap([this] { onChange_ = nullptr; }));
}

void WindowManager::noteEvent(const xcb_generic_event_t& event) {
    const bool wasAlive = checkWindow_ != XCB_WINDOW_NONE;
    if (eventCode(event) == XCB_DESTROY_NOTIFY) {
        if (!wasAlive || eventAs<xcb_destroy_notify_event_t>(event).window != checkWindow_) {
            return;
        }
    } else if (eventCode(event) == XCB_PROPERTY_NOTIFY) {
        const auto& change = eventAs<xcb_property_notify_event_t>(event);
        const auto& atoms = connection_.atoms();
        if (change.window != connection_.root() ||
            (change.atom != atoms.netSupportingWmCheck && change.atom != atoms.netSupported)) {
            return;
        }
    } else {
        return;
    }
    refresh();
    const bool isAlive = checkWindow_ != XCB_WINDOW_NONE;
    if (isAlive != wasAlive && onChange_) {
        onChange_(isAlive);
    }
}

void WindowManager::refresh() {
    const auto deadline = deadlineFromNow();
    const auto& atoms = connection_.atoms();
    const auto checkRequest =
        requestProperty(connection_, connection_.root(), atoms.netSupportingWmCheck, XCB_ATOM_WINDOW, 1);
    const auto supportedRequest = requestProperty(connection_, connection_.root(), atoms.netSupported,
                                                  XCB_ATOM_ATOM, longestFeatureList);
    const auto checkReply = connection_.await<xcb_get_property_reply_t>(checkRequest, deadline);
    const auto supportedReply = connection_.await<xcb_get_property_reply_t>(supportedRequest, deadline);

    checkWindow_ = XCB_WINDOW_NONE;
    supported_.clear();
    checkWindowEvents_.reset();
    stale_ = checkReply == nullptr;
    const auto named = words(checkReply.get());
    if (named.empty()) {
        return;
    }
    // The root keeps the property when its manager dies: only the window itself, pointing at itself, proves
    // life.
    auto events = connection_.select(named[0], XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    const auto ownReply = connection_.await<xcb_get_property_reply_t>(
        requestProperty(connection_, named[0], atoms.netSupportingWmCheck, XCB_ATOM_WINDOW, 1), deadline);
    const auto own = words(ownReply.get());
    if (own.empty() || own[0] != named[0]) {
        return;
    }
    checkWindow_ = named[0];
    checkWindowEvents_ = std::move(events);
    const auto features = words(supportedReply.get());
    supported_ = {features.begin(), features.end()};
}

} // namespace karto::x11
