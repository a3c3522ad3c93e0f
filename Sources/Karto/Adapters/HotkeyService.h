#pragma once
// Claims every shortcut of the program and turns presses into commands.

#include "Karto/Platform/HotKeyCenter.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "KartoCore/Config.h"
#include "KartoCore/KartoCommand.h"
#include "KartoCore/ModifierSet.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace karto {

class HotkeyService {
public:
    using Handler = std::function<void(const KartoCommand&)>;

    explicit HotkeyService(HotKeyCenter& center);

    // Claims the shortcuts and hands every press to the handler, in place of any earlier one.
    void registerHotkeys(ModifierSet modifiers, const CommandKeyMap& keys, Handler handler);
    // Gives up the shortcuts that are not among the new ones, and claims those of the new ones that it does
    // not hold; the handler stays.
    void rebind(ModifierSet modifiers, const CommandKeyMap& keys);
    // Gives all shortcuts up. To be followed by rebind when the keyboard has changed: a shortcut that is held
    // may sit on another key than it names.
    void release();

    // The commands whose shortcut could not be claimed the last time, in the order of registration.
    [[nodiscard]] const std::vector<KartoCommand>& failedRegistrations() const {
        return failedRegistrations_;
    }

    // No press will ever arrive.
    [[nodiscard]] bool eventHandlerInstallationFailed() const { return eventHandlerInstallationFailed_; }

private:
    struct Claim {
        HotKey hotKey;
        Registration registration;
    };

    [[nodiscard]] bool holds(const HotKey& hotKey) const;
    bool claim(const HotKey& hotKey);
    void pressed(std::uint32_t id) const;

    HotKeyCenter& center_;
    Handler handler_;
    // Outlives the shortcuts whose presses it receives.
    Registration eventHandler_;
    std::vector<Claim> claims_;
    std::vector<KartoCommand> failedRegistrations_;
    bool eventHandlerInstallationFailed_ = false;
    WeakCallbacks callbacks_;
};

} // namespace karto
