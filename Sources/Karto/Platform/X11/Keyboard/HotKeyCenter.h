#pragma once
// System-wide shortcuts as passive grabs of keys on the root window.

#include "Karto/Platform/HotKeyCenter.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Keyboard/Keyboard.h"
#include "Karto/Platform/X11/Keyboard/ModifierKeyGuard.h"
#include "Karto/Platform/X11/Keyboard/PressFilter.h"
#include "Karto/Platform/X11/Keyboard/Xkb.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>

namespace karto::x11 {

class HotKeyCenter final : public karto::HotKeyCenter {
public:
    HotKeyCenter(Connection& connection, Scheduler& scheduler);

    Registration installHandler(std::function<void(std::uint32_t id)> onPress) override;
    std::expected<Registration, HotKeyRefused> registerHotKey(const HotKey& hotKey) override;
    Registration observeKeyboardChanges(std::function<void()> onChange) override;

private:
    // One shortcut under every subset of the lock modifiers, as they were when it was claimed.
    struct Grab {
        xcb_keycode_t key = 0;
        std::uint8_t modifiers = 0;
        std::uint8_t locks = 0;
        std::uint32_t id = 0;

        [[nodiscard]] bool matches(xcb_keycode_t pressedKey, std::uint8_t heldModifiers) const {
            return key == pressedKey && modifiers == (heldModifiers & ~locks);
        }
    };

    void handle(const Xkb& xkb, const xcb_generic_event_t& event);
    void pressed(const xcb_key_press_event_t& press);
    [[nodiscard]] std::optional<Grab> grabFor(const HotKey& hotKey) const;
    bool claim(const Grab& grab);
    void release(const Grab& grab);
    void readSoon(std::chrono::milliseconds delay);
    void readAgain();

    Connection& connection_;
    Scheduler& scheduler_;
    std::optional<Keyboard> keyboard_;
    PressFilter filter_;
    ModifierKeyGuard guard_;
    std::map<std::uint64_t, Grab> grabs_;
    std::uint64_t claimed_ = 0;
    Observers<std::uint32_t> handlers_;
    Observers<> changeObservers_;
    // Absent without the keyboard extension.
    Registration events_;
    Registration reading_;
    // The server did not answer, and all shortcuts are to be claimed anew.
    Registration claimingAgain_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
