#pragma once
// Keeps shortcuts whole whose last modifier key another program holds for itself, under any other modifiers,
// as a window manager does with the logo keys: the server would pass over every shortcut with the key that
// comes next. Where such a claim is found, a press that completes the modifiers is taken before it gets
// there, and the keyboard let go at once.

#include "Karto/Platform/Registration.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Keyboard/Keyboard.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace karto::x11 {

class ModifierKeyGuard {
public:
    ModifierKeyGuard(Connection& connection, Scheduler& scheduler);

    // For shortcuts with these real modifiers, until it is told of others.
    void cover(const KeyboardMap& map, std::uint8_t modifiers);

    // Once others may have made their claims anew: of two, the later one holds.
    void renew();

    // The press of a key that came before the keyboard was let go, and so past all shortcuts; absent for any
    // other event.
    std::optional<xcb_key_press_event_t> passedOver(const xcb_generic_event_t& event);

private:
    struct Guard {
        xcb_keycode_t key = 0;
        // The other ones, under every subset of the lock modifiers.
        std::vector<std::uint32_t> modifiers;

        bool operator==(const Guard&) const = default;
    };

    void look();
    void take(const Guard& guard);
    void release();

    Connection& connection_;
    Scheduler& scheduler_;
    // The extension's number; absent without it.
    std::optional<std::uint8_t> extension_;
    std::vector<Guard> wanted_;
    std::vector<Guard> taken_;
    Registration root_;
    Registration events_;
    Registration looking_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
