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
#include <optional>
#include <vector>

namespace karto {

class HotkeyService {
public:
    using Handler = std::function<void(const KartoCommand&)>;

    explicit HotkeyService(HotKeyCenter& center);

    // Claims the shortcuts and hands every press to the handler, in place of any earlier one.
    void registerHotkeys(ModifierSet modifiers, const CommandKeyMap& keys, Handler handler);
    // Gives all shortcuts up and claims the new ones; the handler stays.
    void rebind(ModifierSet modifiers, const CommandKeyMap& keys);

    // The commands whose shortcut could not be claimed the last time, in the order of registration.
    [[nodiscard]] const std::vector<KartoCommand>& failedRegistrations() const {
        return failedRegistrations_;
    }

    // No press will ever arrive.
    [[nodiscard]] bool eventHandlerInstallationFailed() const { return eventHandlerInstallationFailed_; }

private:
    void claim(const KartoCommand& command, std::optional<std::uint32_t> keyCode, std::uint32_t modifierMask);
    void pressed(std::uint32_t id) const;

    HotKeyCenter& center_;
    Handler handler_;
    // Outlives the shortcuts whose presses it receives.
    Registration eventHandler_;
    std::vector<Registration> hotKeys_;
    std::vector<KartoCommand> failedRegistrations_;
    bool eventHandlerInstallationFailed_ = false;
    WeakCallbacks callbacks_;
};

} // namespace karto
