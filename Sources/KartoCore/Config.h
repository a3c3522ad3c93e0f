#pragma once
// The configuration record: a plain value, read from TOML (ConfigReading), checked, and asked for its derived
// views.

#include "KartoCore/CommandKey.h"
#include "KartoCore/ConfigValidation.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/KartoCommand.h"
#include "KartoCore/LayoutTree.h"
#include "KartoCore/ModifierSet.h"
#include "KartoCore/OverlayAppearance.h"

#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace karto {

using CommandKeyMap = std::map<KartoCommand, CommandKey>;

struct HotkeysConfig {
    // Names as written, in file order.
    std::vector<std::string> modifiers;
    // Command configuration name to key name; absent when the file has no such table.
    std::optional<std::map<std::string, std::string>> keys;

    bool operator==(const HotkeysConfig&) const = default;
};

// One zone of the flattened trees.
struct ZoneConfig {
    std::string display;
    Orientation orientation = Orientation::landscape;
    // Ring number, from 1.
    int order = 0;
    NormRect rect;

    bool operator==(const ZoneConfig&) const = default;
};

struct KartoConfig {
    std::string profileName;
    // In file order, which the ring numbering follows.
    std::vector<DisplayLayout> displays;
    std::optional<HotkeysConfig> hotkeys;
    std::optional<OverlayConfig> overlay;

    // True when the text holds a table of the old flat format, anywhere.
    static bool looksLikeLegacyFormat(std::string_view text);

    // Every zone of every layout with its ring number, in walk order.
    [[nodiscard]] std::vector<ZoneConfig> zones() const;

    // The hyper combination; all four modifiers without a hotkeys section, possibly empty with one.
    [[nodiscard]] std::expected<ModifierSet, ModifierSet::UnknownModifier> modifierSet() const;

    // The key of every configurable command: the defaults with the user's keys in their place.
    [[nodiscard]] std::expected<CommandKeyMap, ConfigError> commandKeys() const;

    // True when the file names a key for the command, even its default one.
    [[nodiscard]] bool hasCommandKeyOverride(const KartoCommand& command) const;

    [[nodiscard]] std::expected<OverlayAppearance, ConfigError> overlayAppearance() const;

    // The first thing that makes this configuration unusable.
    [[nodiscard]] std::expected<void, ConfigError> validate() const;

    bool operator==(const KartoConfig&) const = default;
};

} // namespace karto
