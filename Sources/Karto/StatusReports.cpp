#include "Karto/StatusReports.h"

#include "KartoCore/ZoneResolver.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <vector>

namespace karto {

namespace {

std::string namesOf(ModifierSet modifiers) { return fmt::format("{}", fmt::join(modifiers.names(), "+")); }

// The names joined by ", ".
std::string namesOf(std::span<const DisplayInfo> displays) {
    std::vector<std::string_view> names;
    names.reserve(displays.size());
    std::ranges::transform(displays, std::back_inserter(names), [](const DisplayInfo& display) {
        return display.name.empty() ? std::string_view("(unnamed)") : std::string_view(display.name);
    });
    return fmt::format("{}", fmt::join(names, ", "));
}

// "[KartoCore.KartoCommand.tidy, ...]"
std::string listOf(std::span<const KartoCommand> commands) {
    std::vector<std::string> names;
    names.reserve(commands.size());
    std::ranges::transform(commands, std::back_inserter(names), [](const KartoCommand& command) {
        return "KartoCore.KartoCommand." + command.caseName();
    });
    return fmt::format("[{}]", fmt::join(names, ", "));
}

} // namespace

void logConfigStatus(std::string_view context, const ConfigProviding& config, DisplayProviding& displays,
                     std::span<const HotkeyNameMigration::Rename> renames, CheckLog& log) {
    const auto current = config.current();
    if (!current) {
        log.append(fmt::format("{}: no config loaded — {}", context,
                               config.lastError().value_or("no config file yet")));
        return;
    }
    const auto& connected = displays.displays();
    const auto ring = ZoneResolver::resolve(*current, connected);
    log.append(fmt::format("{}: config loaded, profile \"{}\", zones {}, ring {}, displays [{}]", context,
                           current->profileName, current->zones().size(), ring.size(), namesOf(connected)));
    if (ring.empty()) {
        log.append(fmt::format(
            "{}: RING IS EMPTY — no zone matches a connected display, no hotkey will move anything",
            context));
    }
    for (const auto& [name, orientation, count] : ZoneResolver::collisions(*current, connected)) {
        log.append(fmt::format(
            "{}: {} displays share the name \"{}\" ({}) — every zone for it resolves onto one of them",
            context, count, name, rawName(orientation)));
    }
    for (const auto& [oldName, newName, newNameAlsoPresent] : renames) {
        log.append(
            fmt::format("{}: hotkey \"{}\" is the former name of \"{}\" and was read as it — that key now "
                        "expands or shrinks the window instead of cycling size variants; the next save "
                        "writes the new name",
                        context, oldName, newName));
        if (newNameAlsoPresent) {
            log.append(
                fmt::format("{}: the hotkey table names both \"{}\" and \"{}\" — the new name is the one "
                            "that binds, and the old line goes on the next save",
                            context, oldName, newName));
        }
    }
}

void logHotkeyRegistration(std::string_view context, const HotkeyService& hotkeys,
                           const ConfigProviding& config, CheckLog& log) {
    const std::string modifiers = namesOf(config.hotkeyModifiers());
    if (hotkeys.eventHandlerInstallationFailed()) {
        log.append(fmt::format("{}: event handler installation FAILED, no hotkey will ever fire", context));
    } else if (const auto& failed = hotkeys.failedRegistrations(); !failed.empty()) {
        log.append(
            fmt::format("{}: failed to claim {} for modifiers [{}]", context, listOf(failed), modifiers));
    } else {
        log.append(fmt::format("{}: all commands registered for modifiers [{}]", context, modifiers));
    }
}

std::string bannerText(ModifierSet modifiers, const CommandKeyMap& keys) {
    auto text = fmt::format("Karto is running. The hyper key is {}.\n", namesOf(modifiers));
    for (const KartoCommand& command : KartoCommand::configurable) {
        const auto key = keys.find(command);
        text += fmt::format("  hyper + {}  {}\n", key == keys.end() ? "?" : key->second.glyph(),
                            command.displayName());
    }
    return text + "  hyper + 1…9  Move a window to its zone";
}

} // namespace karto
