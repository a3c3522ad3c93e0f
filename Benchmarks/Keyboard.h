#pragma once
// Presses keys as a person at the keyboard would, through the server's XTEST extension.

#include "XServer.h"

#include <array>
#include <cstdint>

namespace karto::bench {

class Keyboard {
public:
    explicit Keyboard(const XServer& server);

    // Presses Shift, Control, Alt and Super and returns the time just before.
    [[nodiscard]] Clock::time_point pressHyper() const;
    // The same, and gives every program that watches them a moment.
    void holdHyper() const;
    void releaseHyper() const;
    // Returns the time just before the press was sent.
    [[nodiscard]] Clock::time_point press(xcb_keycode_t key) const;
    // Lets the key go, then the modifiers.
    void release(xcb_keycode_t key) const;

private:
    void fake(std::uint8_t event, xcb_keycode_t key) const;

    const XServer& server_;
    std::array<xcb_keycode_t, 4> hyper_;
};

} // namespace karto::bench
