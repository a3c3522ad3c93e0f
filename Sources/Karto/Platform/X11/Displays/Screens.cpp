#include "Karto/Platform/X11/Displays/Screens.h"

#include "Karto/Platform/X11/Server/Extensions.h"

#include <algorithm>
#include <utility>

namespace karto::x11 {

namespace {

// One change of the screens comes as several events, and panels follow it.
constexpr std::chrono::milliseconds gatherTime{120};

// The number of the extension's first event; absent when the server lacks it.
std::optional<int> useRandr(Connection& connection) {
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_randr_id);
    if (extension == nullptr || extension->present == 0) {
        return std::nullopt;
    }
    // The server wants to be told the version that this client speaks.
    const auto announced = xcb_randr_query_version(connection.get(), 1, 5);
    xcb_discard_reply(connection.get(), announced.sequence);
    xcb_randr_select_input(connection.get(), connection.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_PROPERTY);
    return extension->first_event;
}

} // namespace

Screens::Screens(Connection& connection, Scheduler& scheduler)
    : connection_(connection)
    , scheduler_(scheduler)
    , firstRandrEvent_(useRandr(connection)) {
    // Monitors that a person defines are announced as a change of the root window alone.
    root_ = connection_.select(connection_.root(),
                               XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    events_ = connection_.observe(callbacks_.wrap([this](const xcb_generic_event_t& event) {
        if (concernsScreens(event) || concernsPanels(event)) {
            readSoon(gatherTime);
        }
    }));
    readAgain();
}

std::vector<Screen> Screens::screens() { return screens_; }

Registration Screens::observeChanges(std::function<void()> onChange) {
    return observers_.add(std::move(onChange));
}

bool Screens::concernsScreens(const xcb_generic_event_t& event) const {
    const int code = eventCode(event);
    if (code == XCB_CONFIGURE_NOTIFY) {
        return eventAs<xcb_configure_notify_event_t>(event).window == connection_.root();
    }
    if (code == XCB_PROPERTY_NOTIFY) {
        const auto& news = eventAs<xcb_property_notify_event_t>(event);
        const Atoms& atoms = connection_.atoms();
        const bool isWatched =
            news.atom == atoms.netClientList || news.atom == atoms.netWorkarea ||
            news.atom == atoms.netCurrentDesktop || news.atom == atoms.netDesktopGeometry ||
            std::ranges::any_of(areaAtoms_, [&](const auto& entry) { return entry.second == news.atom; });
        return news.window == connection_.root() && isWatched;
    }
    if (!firstRandrEvent_) {
        return false;
    }
    if (code == *firstRandrEvent_ + XCB_RANDR_NOTIFY) {
        // Backlights and the like are properties too.
        const auto& news = eventAs<xcb_randr_notify_event_t>(event);
        return news.subCode != XCB_RANDR_NOTIFY_OUTPUT_PROPERTY || news.u.op.atom == connection_.atoms().edid;
    }
    return code == *firstRandrEvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY;
}

bool Screens::concernsPanels(const xcb_generic_event_t& event) const {
    switch (eventCode(event)) {
    case XCB_PROPERTY_NOTIFY: {
        const auto& news = eventAs<xcb_property_notify_event_t>(event);
        const Atoms& atoms = connection_.atoms();
        return panels_.contains(news.window) &&
               (news.atom == atoms.netWmStrutPartial || news.atom == atoms.netWmStrut);
    }
    case XCB_MAP_NOTIFY: return panels_.contains(eventAs<xcb_map_notify_event_t>(event).window);
    case XCB_UNMAP_NOTIFY: return panels_.contains(eventAs<xcb_unmap_notify_event_t>(event).window);
    case XCB_DESTROY_NOTIFY: return panels_.contains(eventAs<xcb_destroy_notify_event_t>(event).window);
    default: return false;
    }
}

void Screens::readSoon(std::chrono::milliseconds delay) {
    if (!reading_) {
        reading_ = scheduler_.after(delay, callbacks_.wrap([this] { readAgain(); }));
    }
}

void Screens::readAgain() {
    reading_.reset();
    auto reading = readScreens(connection_, firstRandrEvent_.has_value(), areaAtoms_);
    if (!reading) {
        if (!connection_.broken()) {
            readSoon(retryTime);
        }
        return;
    }
    if (watch(reading->panels)) {
        // It may have changed between the look at it and the watch on it.
        readSoon(gatherTime);
    }
    // Screens that are all off will be back, mostly as they were; a new arrangement passes through that
    // state.
    if (!reading->screens.empty() && screens_ != reading->screens) {
        screens_ = std::move(reading->screens);
        observers_.notify();
    }
}

bool Screens::watch(const std::vector<xcb_window_t>& panels) {
    std::erase_if(panels_,
                  [&](const auto& entry) { return std::ranges::find(panels, entry.first) == panels.end(); });
    bool grew = false;
    for (const auto window : panels) {
        if (!panels_.contains(window)) {
            panels_.emplace(window, connection_.select(window, XCB_EVENT_MASK_PROPERTY_CHANGE |
                                                                   XCB_EVENT_MASK_STRUCTURE_NOTIFY));
            grew = true;
        }
    }
    return grew;
}

} // namespace karto::x11
