#include "Karto/Platform/X11/Keyboard/HotKeyCenter.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace karto::x11 {

namespace {

// One change of the keyboard comes as several events.
constexpr std::chrono::milliseconds gatherTime{100};

} // namespace

HotKeyCenter::HotKeyCenter(Connection& connection, Scheduler& scheduler)
    : connection_(connection)
    , scheduler_(scheduler)
    , guard_(connection, scheduler) {
    const auto xkb = Xkb::use(connection);
    if (!xkb) {
        return;
    }
    xkb->detectRepetition();
    xkb->selectKeyboardChanges();
    events_ = connection_.observe(
        callbacks_.wrap([this, xkb = *xkb](const xcb_generic_event_t& event) { handle(xkb, event); }));
    readAgain();
}

Registration HotKeyCenter::installHandler(std::function<void(std::uint32_t id)> onPress) {
    return events_ ? handlers_.add(std::move(onPress)) : Registration();
}

std::expected<Registration, HotKeyRefused> HotKeyCenter::registerHotKey(const HotKey& hotKey) {
    const auto grab = grabFor(hotKey);
    // A server that did not answer for one shortcut is not waited for again for each of the others.
    if (!keyboard_ || !grab || claimingAgain_ || !claim(*grab)) {
        return std::unexpected(HotKeyRefused());
    }
    guard_.cover(keyboard_->map, grab->modifiers);
    const auto key = claimed_++;
    grabs_.emplace(key, *grab);
    return Registration(callbacks_.wrap([this, key] { release(grabs_.extract(key).mapped()); }));
}

Registration HotKeyCenter::observeKeyboardChanges(std::function<void()> onChange) {
    return changeObservers_.add(std::move(onChange));
}

std::optional<HotKeyCenter::Grab> HotKeyCenter::grabFor(const HotKey& hotKey) const {
    if (!keyboard_) {
        return std::nullopt;
    }
    const KeyboardMap& map = keyboard_->map;
    const auto key = map.keyCodes.find(hotKey.keyCode);
    const auto modifiers = map.modifiers.realModifiers(hotKey.modifierMask);
    if (key == map.keyCodes.end() || !modifiers) {
        return std::nullopt;
    }
    // The server would let this client grab a key twice, and release it for both at once.
    const bool taken = std::ranges::any_of(
        grabs_, [&](const auto& entry) { return entry.second.matches(key->second, *modifiers); });
    return taken ? std::nullopt
                 : std::optional(Grab{
                       .key = key->second, .modifiers = *modifiers, .locks = map.locks, .id = hotKey.id});
}

bool HotKeyCenter::claim(const Grab& grab) {
    std::vector<xcb_void_cookie_t> requests;
    for (const auto locks : subsets(grab.locks)) {
        requests.push_back(xcb_grab_key_checked(connection_.get(), 0, connection_.root(),
                                                grab.modifiers | locks, grab.key, XCB_GRAB_MODE_ASYNC,
                                                XCB_GRAB_MODE_ASYNC));
    }
    const auto outcomes = connection_.succeeded(requests, deadlineFromNow());
    const bool isClaimed = outcomes && std::ranges::all_of(*outcomes, std::identity());
    if (!isClaimed) {
        release(grab);
    }
    if (!outcomes && !connection_.broken()) {
        claimingAgain_ = scheduler_.after(retryTime, callbacks_.wrap([this] {
            claimingAgain_.reset();
            changeObservers_.notify();
        }));
    }
    return isClaimed;
}

void HotKeyCenter::release(const Grab& grab) {
    for (const auto locks : subsets(grab.locks)) {
        xcb_ungrab_key(connection_.get(), grab.key, connection_.root(), grab.modifiers | locks);
    }
    connection_.flush();
}

void HotKeyCenter::handle(const Xkb& xkb, const xcb_generic_event_t& event) {
    if (eventCode(event) == XCB_KEY_PRESS) {
        pressed(eventAs<xcb_key_press_event_t>(event));
    } else if (eventCode(event) == XCB_KEY_RELEASE && keyboard_) {
        filter_.released(eventAs<xcb_key_release_event_t>(event).detail, keyboard_->repetition);
    } else if (const auto press = guard_.passedOver(event)) {
        pressed(*press);
        filter_.loseSight();
    } else if (xkb.isKeyboardChange(event)) {
        readSoon(gatherTime);
    }
}

void HotKeyCenter::pressed(const xcb_key_press_event_t& press) {
    if (!keyboard_ || !filter_.pressed(press.detail, press.time, keyboard_->repetition)) {
        return;
    }
    // Above the modifiers the state holds mouse buttons and the keyboard group.
    const auto held = static_cast<std::uint8_t>(press.state & 0xFFU);
    const auto grab = std::ranges::find_if(
        grabs_, [&](const auto& entry) { return entry.second.matches(press.detail, held); });
    if (grab != grabs_.end()) {
        // A handler may give the shortcut up.
        const auto id = grab->second.id;
        handlers_.notify(id);
    }
}

void HotKeyCenter::readSoon(std::chrono::milliseconds delay) {
    if (!reading_) {
        reading_ = scheduler_.after(delay, callbacks_.wrap([this] { readAgain(); }));
    }
}

void HotKeyCenter::readAgain() {
    reading_.reset();
    const auto keyboard = readKeyboard(connection_);
    if (!keyboard) {
        if (!connection_.broken()) {
            readSoon(retryTime);
        }
        return;
    }
    guard_.renew();
    const bool moved = !keyboard_ || keyboard_->map != keyboard->map;
    keyboard_ = keyboard;
    if (moved) {
        changeObservers_.notify();
    }
}

} // namespace karto::x11
