#pragma once
// Where the program's keys and modifiers sit on the server's keyboard.

#include "Karto/Platform/X11/Server/Connection.h"

#include <xcb/xcb.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace karto::x11 {

inline constexpr std::uint8_t realModifierCount = 8;

// The real modifier (1, 2, 4 ... 128) that each of the program's modifiers sets; 0 when no key sets it.
struct ModifierMasks {
    std::uint8_t shift = 0;
    std::uint8_t command = 0;
    std::uint8_t control = 0;
    std::uint8_t option = 0;

    // The real modifiers for HotKeyMask bits; absent when the keyboard lacks one of them.
    [[nodiscard]] std::optional<std::uint8_t> realModifiers(std::uint32_t hotKeyMask) const;
    // The ModifierBits for real modifiers.
    [[nodiscard]] std::uint32_t modifierBits(std::uint8_t realModifiers) const;

    bool operator==(const ModifierMasks&) const = default;
};

struct KeyboardMap {
    // The server's key codes by the program's; keys that the keyboard lacks are missing.
    std::map<std::uint32_t, xcb_keycode_t> keyCodes;
    ModifierMasks modifiers;
    // The real modifiers of the lock keys.
    std::uint8_t locks = 0;
    // The keys that set each real modifier, from the lowest one on.
    std::array<std::vector<xcb_keycode_t>, realModifierCount> modifierKeys;

    bool operator==(const KeyboardMap&) const = default;
};

// How a key that is held sends further presses. The server repeats the repeating key pressed last, alone.
struct KeyRepetition {
    std::chrono::milliseconds delay{0};
    std::chrono::milliseconds interval{0};
    // One bit for every key code that repeats.
    std::array<std::uint8_t, 32> keys{};

    [[nodiscard]] bool repeats(xcb_keycode_t key) const {
        return (keys.at(key / 8U) & (1U << (key % 8U))) != 0;
    }

    bool operator==(const KeyRepetition&) const = default;
};

struct Keyboard {
    KeyboardMap map;
    KeyRepetition repetition;
};

// Every subset of the bits, the empty one first.
std::vector<std::uint8_t> subsets(std::uint8_t bits);

// The server's name for a physical key of the program's; absent for a code that the program does not use.
std::optional<std::string_view> keyName(std::uint32_t keyCode);

// The program's code of a key by the server's, asked of the server; absent for a key that the program does
// not use.
std::optional<std::uint32_t> programKeyCode(Connection& connection, xcb_keycode_t key);

// Absent when the server does not answer. It must be an XKB server.
std::optional<Keyboard> readKeyboard(Connection& connection);

} // namespace karto::x11
