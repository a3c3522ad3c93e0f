#include "Karto/Platform/X11/Server/WindowManager.h"

#include <utility>

namespace karto::x11 {

namespace {

constexpr std::uint32_t longestFeatureList = 1024;

} // namespace

WindowManager::WindowManager(Connection& connection)
    : connection_(connection)
    , rootEvents_(connection.select(connection.root(), XCB_EVENT_MASK_PROPERTY_CHANGE))
    , observation_(connection.observe([this](const xcb_generic_event_t& event) {
        if (concernsManager(event)) {
            refresh();
        }
    })) {}

bool WindowManager::alive() {
    // A manager that is starting may name its window before that names itself.
    if (stale_ || checkWindow_ == XCB_WINDOW_NONE) {
        refresh();
    }
    return checkWindow_ != XCB_WINDOW_NONE;
}

bool WindowManager::awaitAlive(Deadline deadline) {
    while (!alive() && !connection_.broken() && std::chrono::steady_clock::now() < deadline) {
        connection_.awaitEvents(connection_.eventMark(), deadline);
    }
    return alive();
}

bool WindowManager::supports(xcb_atom_t feature) { return alive() && supported_.contains(feature); }

std::string WindowManager::name() {
    if (!alive()) {
        return "";
    }
    const auto& atoms = connection_.atoms();
    return text(connection_
                    .await<xcb_get_property_reply_t>(
                        requestProperty(connection_, checkWindow_, atoms.netWmName, atoms.utf8String),
                        deadlineFromNow())
                    .get());
}

bool WindowManager::paintsByAge() {
    // What is built on its library names it, too, but for one.
    const auto manager = name();
    return manager.contains("Mutter") || manager == "GNOME Shell";
}

Registration WindowManager::observeChanges(std::function<void(bool)> onChange) {
    onChange_ = std::move(onChange);
    return Registration(callbacks_.wrap([this] { onChange_ = nullptr; }));
}

bool WindowManager::concernsManager(const xcb_generic_event_t& event) const {
    if (eventCode(event) == XCB_DESTROY_NOTIFY) {
        return eventAs<xcb_destroy_notify_event_t>(event).window == checkWindow_;
    }
    const auto& atoms = connection_.atoms();
    return changesProperty(event, connection_.root(), {atoms.netSupportingWmCheck, atoms.netSupported});
}

void WindowManager::refresh() {
    const auto found = read();
    stale_ = !found;
    if (!found) {
        return;
    }
    const bool wasAlive = checkWindow_ != XCB_WINDOW_NONE;
    const bool isAlive = found->checkWindow != XCB_WINDOW_NONE;
    if (found->checkWindow != checkWindow_) {
        checkWindowEvents_ = isAlive ? connection_.select(found->checkWindow, XCB_EVENT_MASK_STRUCTURE_NOTIFY)
                                     : Registration();
    }
    checkWindow_ = found->checkWindow;
    supported_ = {found->features.begin(), found->features.end()};
    if (isAlive != wasAlive && onChange_) {
        onChange_(isAlive);
    }
}

std::optional<WindowManager::Reading> WindowManager::read() {
    const auto deadline = deadlineFromNow();
    const auto& atoms = connection_.atoms();
    const auto ask = [&](xcb_window_t window, xcb_atom_t property, xcb_atom_t type) {
        return requestProperty(connection_, window, property, type, longestFeatureList);
    };
    const auto checkRequest = ask(connection_.root(), atoms.netSupportingWmCheck, XCB_ATOM_WINDOW);
    const auto supportedRequest = ask(connection_.root(), atoms.netSupported, XCB_ATOM_ATOM);
    const auto checkReply = connection_.await<xcb_get_property_reply_t>(checkRequest, deadline);
    const auto supportedReply = connection_.await<xcb_get_property_reply_t>(supportedRequest, deadline);
    if (!checkReply || !supportedReply) {
        return std::nullopt;
    }
    const auto named = words(checkReply.get());
    if (named.empty()) {
        return Reading();
    }
    // The root keeps the property when its manager dies: only the window itself, pointing at itself, proves
    // life.
    const auto ownRequest = ask(named[0], atoms.netSupportingWmCheck, XCB_ATOM_WINDOW);
    const auto ownReply = connection_.await<xcb_get_property_reply_t>(ownRequest, deadline);
    if (std::chrono::steady_clock::now() >= deadline) {
        return std::nullopt;
    }
    const auto own = words(ownReply.get());
    if (own.empty() || own[0] != named[0]) {
        return Reading();
    }
    const auto features = words(supportedReply.get());
    return Reading{.checkWindow = named[0], .features = {features.begin(), features.end()}};
}

} // namespace karto::x11
