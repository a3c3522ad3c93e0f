#include "Keyboard.h"

#include <xcb/xtest.h>

#include <thread>

namespace karto::bench {
namespace {

// The symbols of the left-hand keys, as the X protocol numbers them.
constexpr xcb_keysym_t shiftLeft = 0xFFE1;
constexpr xcb_keysym_t controlLeft = 0xFFE3;
constexpr xcb_keysym_t altLeft = 0xFFE9;
constexpr xcb_keysym_t superLeft = 0xFFEB;

// Shorter than anybody's overlay delay, longer than any program's reaction to a modifier.
constexpr auto chordPause = std::chrono::milliseconds(20);

} // namespace

Keyboard::Keyboard(const XServer& server)
    : server_(server)
    , hyper_{server.keyCode(shiftLeft), server.keyCode(controlLeft), server.keyCode(altLeft),
             server.keyCode(superLeft)} {}

Clock::time_point Keyboard::pressHyper() const {
    const auto start = Clock::now();
    for (const xcb_keycode_t modifier : hyper_)
        fake(XCB_KEY_PRESS, modifier);
    xcb_flush(server_.connection());
    return start;
}

void Keyboard::holdHyper() const {
    static_cast<void>(pressHyper());
    server_.sync();
    std::this_thread::sleep_for(chordPause);
}

void Keyboard::releaseHyper() const {
    for (const xcb_keycode_t modifier : hyper_)
        fake(XCB_KEY_RELEASE, modifier);
    server_.sync();
}

Clock::time_point Keyboard::press(xcb_keycode_t key) const {
    const auto start = Clock::now();
    fake(XCB_KEY_PRESS, key);
    xcb_flush(server_.connection());
    return start;
}

void Keyboard::release(xcb_keycode_t key) const {
    fake(XCB_KEY_RELEASE, key);
    releaseHyper();
}

void Keyboard::fake(std::uint8_t event, xcb_keycode_t key) const {
    xcb_test_fake_input(server_.connection(), event, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

} // namespace karto::bench
