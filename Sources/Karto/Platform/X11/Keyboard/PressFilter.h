#pragma once
// Tells presses of a key apart from the repetitions that the server sends while it is held.
// It sees what a grab delivers: every key from the press of a shortcut until that key is released. A key
// pressed meanwhile may be released when the grab has ended, unseen.

#include "Karto/Platform/X11/Keyboard/Keyboard.h"

#include <xcb/xcb.h>

#include <optional>

namespace karto::x11 {

class PressFilter {
public:
    // Whether this is a press of its own. The repetition must be detectable: presses only, no releases.
    bool pressed(xcb_keycode_t key, xcb_timestamp_t time, const KeyRepetition& repetition);
    void released(xcb_keycode_t key, const KeyRepetition& repetition);
    // From here on the release of the key pressed last may go unseen.
    void loseSight();

private:
    // The key that the server may be repeating.
    struct Held {
        xcb_keycode_t key = 0;
        // Of the latest press or repetition.
        xcb_timestamp_t time = 0;
        bool repeated = false;
        // Its release may go unseen.
        bool doubtful = false;
    };

    [[nodiscard]] bool isRepetition(xcb_keycode_t key, xcb_timestamp_t time,
                                    const KeyRepetition& repetition) const;

    std::optional<Held> held_;
};

} // namespace karto::x11
