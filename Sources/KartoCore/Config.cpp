#include "KartoCore/Config.h"

#include "KartoCore/TreeOrdering.h"

#include <array>
#include <set>
#include <utility>

namespace karto {

namespace {

// One entry of the key table.
std::expected<std::pair<KartoCommand, CommandKey>, ConfigError> binding(const std::string& commandName,
                                                                        const std::string& keyName) {
    const auto command = KartoCommand::named(commandName);
    if (!command) {
        return std::unexpected(ConfigErrors::UnknownCommand{commandName});
    }
    if (CommandKey::isDigit(keyName)) {
        return std::unexpected(ConfigErrors::DigitAsCommandKey{commandName});
    }
    const auto key = CommandKey::named(keyName);
    if (!key) {
        return std::unexpected(ConfigErrors::BadCommandKey{.command = commandName, .key = keyName});
    }
    return std::pair(*command, *key);
}

// The first key, by name, that several commands hold.
std::optional<ConfigErrors::DuplicateCommandKey> sharedKey(const CommandKeyMap& keys) {
    std::map<std::string_view, std::set<std::string>> holders;
    for (const auto& [command, key] : keys) {
        holders[key.name()].insert(command.caseName());
    }
    for (const auto& [key, commands] : holders) {
        if (commands.size() > 1) {
            return ConfigErrors::DuplicateCommandKey{.key = std::string(key),
                                                     .commands = {commands.begin(), commands.end()}};
        }
    }
    return std::nullopt;
}

} // namespace

bool KartoConfig::looksLikeLegacyFormat(std::string_view text) { return text.contains("[[profile.zone]]"); }

std::vector<ZoneConfig> KartoConfig::zones() const {
    std::vector<ZoneConfig> zones;
    for (const RingEntry& entry : TreeOrdering::ringOrder(displays)) {
        zones.push_back({.display = entry.display.name,
                         .orientation = entry.display.orientation,
                         .order = entry.order,
                         .rect = entry.zone.rect});
    }
    return zones;
}

std::expected<ModifierSet, ModifierSet::UnknownModifier> KartoConfig::modifierSet() const {
    return hotkeys ? ModifierSet::named(hotkeys->modifiers) : ModifierSet::allModifiers;
}

std::expected<CommandKeyMap, ConfigError> KartoConfig::commandKeys() const {
    CommandKeyMap keys = CommandKey::defaults();
    if (!hotkeys || !hotkeys->keys) {
        return keys;
    }
    for (const auto& [commandName, keyName] : *hotkeys->keys) {
        const auto bound = binding(commandName, keyName);
        if (!bound) {
            return std::unexpected(bound.error());
        }
        keys.insert_or_assign(bound->first, bound->second);
    }
    if (auto shared = sharedKey(keys)) {
        return std::unexpected(*std::move(shared));
    }
    return keys;
}

bool KartoConfig::hasCommandKeyOverride(const KartoCommand& command) const {
    const auto name = command.configName();
    return name && hotkeys && hotkeys->keys && hotkeys->keys->contains(std::string(*name));
}

std::expected<OverlayAppearance, ConfigError> KartoConfig::overlayAppearance() const {
    OverlayAppearance appearance;
    if (!overlay) {
        return appearance;
    }

    struct Setting {
        std::string_view field;
        const std::optional<double>& written;
        Limits limits;
        double& resolved;
    };

    const std::array<Setting, 3> settings{{
        {.field = "delay",
         .written = overlay->delay,
         .limits = OverlayLimits::delay,
         .resolved = appearance.delay},
        {.field = "backgroundOpacity",
         .written = overlay->backgroundOpacity,
         .limits = OverlayLimits::backgroundOpacity,
         .resolved = appearance.backgroundOpacity},
        {.field = "numberSize",
         .written = overlay->numberSize,
         .limits = OverlayLimits::numberSize,
         .resolved = appearance.numberSize},
    }};
    for (const Setting& setting : settings) {
        setting.resolved = setting.written.value_or(setting.resolved);
        if (!setting.limits.contain(setting.resolved)) {
            return std::unexpected(ConfigErrors::OverlayOutOfRange{.field = std::string(setting.field),
                                                                   .value = setting.resolved});
        }
    }
    if (overlay->color) {
        const auto color = RGBColor::fromHex(*overlay->color);
        if (!color) {
            return std::unexpected(ConfigErrors::BadOverlayColor{*overlay->color});
        }
        appearance.color = *color;
    }
    return appearance;
}

} // namespace karto
