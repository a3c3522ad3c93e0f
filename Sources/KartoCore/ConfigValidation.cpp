#include "KartoCore/ConfigValidation.h"

#include "KartoCore/Config.h"
#include "KartoCore/NumberText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <set>
#include <string_view>
#include <utility>

namespace karto {

namespace {

using namespace ConfigErrors;

std::string text(const DuplicateDisplayBinding& error) {
    return fmt::format("two displays are both \"{}\" ({}) — a zone can only bind to one of them", error.name,
                       rawName(error.orientation));
}

std::string text(const SplitOutOfBounds& error) {
    return fmt::format("{} has a split position out of bounds", error.display);
}

std::string text(const BadModifier& error) {
    return fmt::format("unknown modifier \"{}\" — use shift, command, control or option", error.name);
}

std::string text(const UnknownCommand& error) {
    return fmt::format("unknown command \"{}\" in the hotkey keys", error.name);
}

std::string text(const BadCommandKey& error) {
    return fmt::format("\"{}\" is not a key name — {} needs a letter, an arrow, space, return, tab or escape",
                       error.key, error.command);
}

std::string text(const DigitAsCommandKey& error) {
    return fmt::format("{} cannot use a digit: digits 1-9 move a window to the zone with that number",
                       error.command);
}

std::string text(const DuplicateCommandKey& error) {
    return fmt::format("{} are both on \"{}\" — one of them would never fire",
                       fmt::join(error.commands, " and "), error.key);
}

std::string text(const OverlayOutOfRange& error) {
    return fmt::format("overlay {} is {}, outside the allowed range", error.field,
                       shortestDecimal(error.value));
}

std::string text(const BadOverlayColor& error) {
    return fmt::format("overlay color \"{}\" is not a #RRGGBB colour", error.text);
}

std::string text(const NoDisplays&) { return "config has no displays"; }

std::string text(const UnnamedDisplay&) { return "a display has no name"; }

std::string text(const NoModifiers&) { return "the hotkeys section lists no modifiers"; }

std::string text(const TooFewModifiers&) {
    return "the hotkeys section lists only one modifier — held on its own it takes ordinary keys away from "
           "every application; list at least two";
}

using Check = std::expected<void, ConfigError>;

constexpr Limits splitLimits{.lower = LayoutNode::minimumExtent, .upper = 1 - LayoutNode::minimumExtent};

bool splitsInBounds(const LayoutNode& node) {
    const Split* const split = node.split();
    return split == nullptr ||
           (splitLimits.contain(split->at) && splitsInBounds(split->first) && splitsInBounds(split->second));
}

Check checkDisplays(const std::vector<DisplayLayout>& displays) {
    if (displays.empty()) {
        return std::unexpected(NoDisplays{});
    }
    std::set<std::pair<std::string_view, Orientation>> bindings;
    for (const DisplayLayout& layout : displays) {
        if (layout.name.empty()) {
            return std::unexpected(UnnamedDisplay{});
        }
        if (!bindings.emplace(layout.name, layout.orientation).second) {
            return std::unexpected(
                DuplicateDisplayBinding{.name = layout.name, .orientation = layout.orientation});
        }
        if (!splitsInBounds(layout.root)) {
            return std::unexpected(SplitOutOfBounds{layout.name});
        }
    }
    return {};
}

Check checkModifiers(const HotkeysConfig& hotkeys) {
    if (hotkeys.modifiers.empty()) {
        return std::unexpected(NoModifiers{});
    }
    const auto modifiers = ModifierSet::named(hotkeys.modifiers);
    if (!modifiers) {
        return std::unexpected(BadModifier{modifiers.error().name});
    }
    if (modifiers->count() < 2) {
        return std::unexpected(TooFewModifiers{});
    }
    return {};
}

} // namespace

std::string message(const ConfigError& error) {
    return std::visit([](const auto& problem) { return text(problem); }, error);
}

std::expected<void, ConfigError> KartoConfig::validate() const {
    if (Check check = checkDisplays(displays); !check) {
        return check;
    }
    if (Check check = hotkeys ? checkModifiers(*hotkeys) : Check(); !check) {
        return check;
    }
    if (const auto keys = commandKeys(); !keys) {
        return std::unexpected(keys.error());
    }
    if (const auto appearance = overlayAppearance(); !appearance) {
        return std::unexpected(appearance.error());
    }
    return {};
}

} // namespace karto
