#include "Karto/Adapters/HotkeyService.h"

#include "Karto/Adapters/KeyCodes.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace karto {

namespace {

struct Shortcut {
    KartoCommand command;
    // Absent for a command without a key.
    std::optional<HotKey> hotKey;
};

// All that are to be claimed, in that order.
std::vector<Shortcut> shortcuts(std::uint32_t modifierMask, const CommandKeyMap& keys) {
    std::vector<Shortcut> shortcuts;
    const auto add = [&](const KartoCommand& command, std::optional<std::uint32_t> keyCode) {
        shortcuts.push_back({.command = command, .hotKey = keyCode.transform([&](std::uint32_t code) {
                                 return HotKey{
                                     .keyCode = code, .modifierMask = modifierMask, .id = command.hotkeyID()};
                             })});
    };
    for (const KartoCommand& command : KartoCommand::configurable) {
        const auto key = keys.find(command);
        add(command, key == keys.end() ? std::nullopt : carbonKeyCode(key->second));
    }
    for (const auto& [digit, keyCode] : ZoneDigits::codes) {
        add(KartoCommand::moveToZone(digit), keyCode);
    }
    add(KartoCommand::cancelCycling, escapeKeyCode);
    return shortcuts;
}

// Of two shortcuts on one key the earlier one is claimed.
bool isDueIn(const std::vector<Shortcut>& wanted, const HotKey& held) {
    const auto first = std::ranges::find_if(wanted, [&](const Shortcut& shortcut) {
        return shortcut.hotKey && shortcut.hotKey->keyCode == held.keyCode &&
               shortcut.hotKey->modifierMask == held.modifierMask;
    });
    return first != wanted.end() && first->hotKey == held;
}

} // namespace

HotkeyService::HotkeyService(HotKeyCenter& center)
    : center_(center) {}

void HotkeyService::registerHotkeys(ModifierSet modifiers, const CommandKeyMap& keys, Handler handler) {
    handler_ = std::move(handler);
    eventHandler_ = center_.installHandler(callbacks_.wrap([this](std::uint32_t id) { pressed(id); }));
    eventHandlerInstallationFailed_ = !eventHandler_;
    rebind(modifiers, keys);
}

void HotkeyService::rebind(ModifierSet modifiers, const CommandKeyMap& keys) {
    const auto wanted = shortcuts(carbonFlags(modifiers), keys);
    std::erase_if(claims_, [&](const Claim& claim) { return !isDueIn(wanted, claim.hotKey); });
    failedRegistrations_.clear();
    for (const auto& [command, hotKey] : wanted) {
        if (!hotKey || !(holds(*hotKey) || claim(*hotKey))) {
            failedRegistrations_.push_back(command);
        }
    }
}

void HotkeyService::release() { claims_.clear(); }

bool HotkeyService::holds(const HotKey& hotKey) const {
    return std::ranges::find(claims_, hotKey, &Claim::hotKey) != claims_.end();
}

bool HotkeyService::claim(const HotKey& hotKey) {
    auto registration = center_.registerHotKey(hotKey);
    if (!registration) {
        return false;
    }
    claims_.push_back({.hotKey = hotKey, .registration = *std::move(registration)});
    return true;
}

void HotkeyService::pressed(std::uint32_t id) const {
    const auto command = KartoCommand::withHotkeyID(id);
    if (command && handler_) {
        handler_(*command);
    }
}

} // namespace karto
