#pragma once
// The program's own codes for physical keys and modifiers. They name keys by their place on the keyboard,
// whatever layout is in force; each platform translates them into its own.

#include "Karto/Platform/ModifierEvents.h"
#include "KartoCore/CommandKey.h"
#include "KartoCore/ModifierSet.h"

#include <array>
#include <cstdint>
#include <optional>

namespace karto {

// The digit keys of the main row, not of the keypad.
namespace ZoneDigits {

struct DigitKey {
    int digit = 0;
    std::uint32_t keyCode = 0;
};

// By digit, ascending.
inline constexpr std::array<DigitKey, 9> codes{{
    {.digit = 1, .keyCode = 18},
    {.digit = 2, .keyCode = 19},
    {.digit = 3, .keyCode = 20},
    {.digit = 4, .keyCode = 21},
    {.digit = 5, .keyCode = 23},
    {.digit = 6, .keyCode = 22},
    {.digit = 7, .keyCode = 26},
    {.digit = 8, .keyCode = 28},
    {.digit = 9, .keyCode = 25},
}};

} // namespace ZoneDigits

inline constexpr std::uint32_t escapeKeyCode = 53;

// The code of the key; absent for a key that has none.
std::optional<std::uint32_t> carbonKeyCode(const CommandKey& key);

// The HotKeyMask bits of the set.
std::uint32_t carbonFlags(ModifierSet modifiers);

// The modifiers among the flags; every other bit is ignored.
ModifierSet modifierSet(ModifierFlags flags);

} // namespace karto
