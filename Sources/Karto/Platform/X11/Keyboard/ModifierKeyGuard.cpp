#include "Karto/Platform/X11/Keyboard/ModifierKeyGuard.h"

#include "Karto/Platform/X11/Server/Extensions.h"

#include <algorithm>

namespace karto::x11 {

namespace {

// Until a window manager that has just started, or seen another keyboard, has claimed its keys.
constexpr std::chrono::milliseconds claimTime{500};

std::optional<std::uint8_t> useXInput(Connection& connection) {
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_input_id);
    if (extension == nullptr || extension->present == 0) {
        return std::nullopt;
    }
    // The server wants to be told the version that this client speaks.
    const auto announced = xcb_input_xi_query_version(connection.get(), 2, 0);
    xcb_discard_reply(connection.get(), announced.sequence);
    return extension->major_opcode;
}

} // namespace

ModifierKeyGuard::ModifierKeyGuard(Connection& connection, Scheduler& scheduler)
    : connection_(connection)
    , scheduler_(scheduler)
    , extension_(useXInput(connection)) {
    if (!extension_) {
        return;
    }
    root_ = connection_.select(connection_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    events_ = connection_.observe(callbacks_.wrap([this](const xcb_generic_event_t& event) {
        // A new manager may claim other keys.
        if (changesProperty(event, connection_.root(), {connection_.atoms().netSupportingWmCheck})) {
            renew();
        }
    }));
}

void ModifierKeyGuard::renew() {
    looking_ = scheduler_.after(claimTime, callbacks_.wrap([this] { look(); }));
}

void ModifierKeyGuard::cover(const KeyboardMap& map, std::uint8_t modifiers) {
    std::vector<Guard> wanted;
    for (std::size_t i = 0; i < map.modifierKeys.size(); ++i) {
        const unsigned modifier = 1U << i;
        if ((modifiers & modifier) == 0) {
            continue;
        }
        for (const xcb_keycode_t key : map.modifierKeys.at(i)) {
            Guard guard{.key = key, .modifiers = {}};
            for (const auto locks : subsets(map.locks)) {
                guard.modifiers.push_back((modifiers & ~modifier) | locks);
            }
            wanted.push_back(std::move(guard));
        }
    }
    if (wanted != wanted_) {
        wanted_ = std::move(wanted);
        look();
    }
}

void ModifierKeyGuard::look() {
    looking_.reset();
    release();
    if (!extension_) {
        return;
    }
    // What nobody else holds can be had, and is given back.
    std::vector<xcb_void_cookie_t> requests;
    for (const Guard& guard : wanted_) {
        requests.push_back(xcb_grab_key_checked(connection_.get(), 0, connection_.root(),
                                                static_cast<std::uint16_t>(guard.modifiers.front()),
                                                guard.key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        xcb_ungrab_key(connection_.get(), guard.key, connection_.root(),
                       static_cast<std::uint16_t>(guard.modifiers.front()));
    }
    const auto outcomes = connection_.succeeded(requests, deadlineFromNow());
    for (std::size_t i = 0; outcomes && i < outcomes->size(); ++i) {
        if (!outcomes->at(i)) {
            take(wanted_.at(i));
        }
    }
    connection_.flush();
}

void ModifierKeyGuard::take(const Guard& guard) {
    // Claims of this kind stand beside those of the other kind, and the latest goes first.
    constexpr std::uint32_t keys = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    const auto request = xcb_input_xi_passive_grab_device(
        connection_.get(), XCB_CURRENT_TIME, connection_.root(), XCB_CURSOR_NONE, guard.key,
        XCB_INPUT_DEVICE_ALL_MASTER, static_cast<std::uint16_t>(guard.modifiers.size()), 1,
        XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, 0, &keys,
        guard.modifiers.data());
    xcb_discard_reply(connection_.get(), request.sequence);
    taken_.push_back(guard);
}

void ModifierKeyGuard::release() {
    for (const Guard& guard : taken_) {
        xcb_input_xi_passive_ungrab_device(connection_.get(), connection_.root(), guard.key,
                                           XCB_INPUT_DEVICE_ALL_MASTER,
                                           static_cast<std::uint16_t>(guard.modifiers.size()),
                                           XCB_INPUT_GRAB_TYPE_KEYCODE, guard.modifiers.data());
    }
    taken_.clear();
}

std::optional<xcb_key_press_event_t> ModifierKeyGuard::passedOver(const xcb_generic_event_t& event) {
    if (eventCode(event) != XCB_GE_GENERIC || !extension_) {
        return std::nullopt;
    }
    const auto& press = eventAs<xcb_input_key_press_event_t>(event);
    if (press.extension != *extension_ || press.event_type != XCB_INPUT_KEY_PRESS) {
        return std::nullopt;
    }
    if (std::ranges::find(taken_, press.detail, &Guard::key) != taken_.end()) {
        xcb_input_xi_ungrab_device(connection_.get(), XCB_CURRENT_TIME, press.deviceid);
        connection_.flush();
        return std::nullopt;
    }
    xcb_key_press_event_t result{};
    result.detail = static_cast<xcb_keycode_t>(press.detail);
    result.time = press.time;
    result.state = static_cast<std::uint16_t>(press.mods.effective);
    return result;
}

} // namespace karto::x11
