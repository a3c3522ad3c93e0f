#pragma once
// System-wide shortcuts: a physical key with modifiers that reaches this program wherever the focus is.

#include "Karto/Platform/Registration.h"

#include <cstdint>
#include <expected>
#include <functional>

namespace karto {

// Bits of HotKey::modifierMask.
namespace HotKeyMask {

inline constexpr std::uint32_t command = 0x0100;
inline constexpr std::uint32_t shift = 0x0200;
inline constexpr std::uint32_t option = 0x0800;
inline constexpr std::uint32_t control = 0x1000;

} // namespace HotKeyMask

// Names a physical key and modifiers in the program's own codes; the platform translates them.
struct HotKey {
    std::uint32_t keyCode = 0;
    std::uint32_t modifierMask = 0;
    // Comes back with every press.
    std::uint32_t id = 0;

    bool operator==(const HotKey&) const = default;
};

// Another program holds the shortcut, or the keyboard has no such key.
struct HotKeyRefused {};

class HotKeyCenter {
public:
    virtual ~HotKeyCenter() = default;

    // Delivers presses, once a press however long the key is held, with the shortcut's id. Empty when presses
    // cannot be received at all.
    virtual Registration installHandler(std::function<void(std::uint32_t id)> onPress) = 0;

    // Claims one shortcut, under every state of the lock keys, for as long as the registration lasts.
    virtual std::expected<Registration, HotKeyRefused> registerHotKey(const HotKey& hotKey) = 0;

    // Called when the keyboard has changed so that claimed shortcuts may sit on other keys now.
    virtual Registration observeKeyboardChanges(std::function<void()> onChange) = 0;
};

} // namespace karto
