#include "Karto/Adapters/HotkeyService.h"

#include "Karto/Adapters/KeyCodes.h"

#include <utility>

namespace karto {

HotkeyService::HotkeyService(HotKeyCenter& center)
    : center_(center) {}

void HotkeyService::registerHotkeys(ModifierSet modifiers, const CommandKeyMap& keys, Handler handler) {
    handler_ = std::move(handler);
    eventHandler_ = center_.installHandler(callbacks_.wrap([this](std::uint32_t id) { pressed(id); }));
    eventHandlerInstallationFailed_ = !eventHandler_;
    rebind(modifiers, keys);
}

void HotkeyService::rebind(ModifierSet modifiers, const CommandKeyMap& keys) {
    hotKeys_.clear();
    failedRegistrations_.clear();
    const std::uint32_t mask = carbonFlags(modifiers);
    for (const KartoCommand& command : KartoCommand::configurable) {
        const auto key = keys.find(command);
        claim(command, key == keys.end() ? std::nullopt : carbonKeyCode(key->second), mask);
    }
    for (const auto& [digit, keyCode] : ZoneDigits::codes) {
        claim(KartoCommand::moveToZone(digit), keyCode, mask);
    }
    claim(KartoCommand::cancelCycling, escapeKeyCode, mask);
}

void HotkeyService::claim(const KartoCommand& command, std::optional<std::uint32_t> keyCode,
                          std::uint32_t modifierMask) {
    if (keyCode) {
        auto hotKey = center_.registerHotKey(
            {.keyCode = *keyCode, .modifierMask = modifierMask, .id = command.hotkeyID()});
        if (hotKey) {
            hotKeys_.push_back(std::move(*hotKey));
            return;
        }
    }
    failedRegistrations_.push_back(command);
}

void HotkeyService::pressed(std::uint32_t id) const {
    const auto command = KartoCommand::withHotkeyID(id);
    if (command && handler_) {
        handler_(*command);
    }
}

} // namespace karto
