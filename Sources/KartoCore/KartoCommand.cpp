#include "KartoCore/KartoCommand.h"

#include <fmt/format.h>

#include <algorithm>

namespace karto {

namespace {

struct Entry {
    KartoCommand command;
    std::string_view caseName;
    std::string_view displayName;
    std::uint32_t hotkeyID;
};

// Every command but moveToZone, whose names and identifiers carry its number.
constexpr std::array<Entry, 9> entries{{
    {.command = KartoCommand::nextZone, .caseName = "nextZone", .displayName = "Next zone", .hotkeyID = 1},
    {.command = KartoCommand::previousZone,
     .caseName = "previousZone",
     .displayName = "Previous zone",
     .hotkeyID = 2},
    {.command = KartoCommand::expandZone,
     .caseName = "expandZone",
     .displayName = "Expand to next zone",
     .hotkeyID = 3},
    {.command = KartoCommand::shrinkZone,
     .caseName = "shrinkZone",
     .displayName = "Shrink to previous zone",
     .hotkeyID = 4},
    {.command = KartoCommand::tidy, .caseName = "tidy", .displayName = "Tidy", .hotkeyID = 5},
    {.command = KartoCommand::fillDisplay,
     .caseName = "fillDisplay",
     .displayName = "Fill the display",
     .hotkeyID = 6},
    {.command = KartoCommand::snapToZone,
     .caseName = "snapToZone",
     .displayName = "Snap to its zone",
     .hotkeyID = 9},
    {.command = KartoCommand::cycleWindows,
     .caseName = "cycleWindows",
     .displayName = "Cycle windows in the zone",
     .hotkeyID = 7},
    {.command = KartoCommand::cancelCycling,
     .caseName = "cancelCycling",
     .displayName = "Cancel cycling",
     .hotkeyID = 8},
}};

constexpr std::uint32_t zoneIDBase = 100;
constexpr std::uint32_t lastZone = 9;

// The command must not be moveToZone.
const Entry& entryOf(KartoCommand command) { return *std::ranges::find(entries, command, &Entry::command); }

} // namespace

std::optional<KartoCommand> KartoCommand::named(std::string_view configName) {
    const auto* const found = std::ranges::find(configurable, configName, &KartoCommand::configName);
    return found == configurable.end() ? std::nullopt : std::optional(*found);
}

std::optional<KartoCommand> KartoCommand::withHotkeyID(std::uint32_t id) {
    if (id > zoneIDBase && id <= zoneIDBase + lastZone) {
        return moveToZone(static_cast<int>(id - zoneIDBase));
    }
    const auto* const found = std::ranges::find(entries, id, &Entry::hotkeyID);
    return found == entries.end() ? std::nullopt : std::optional(found->command);
}

std::optional<std::string_view> KartoCommand::configName() const {
    if (std::ranges::find(configurable, *this) == configurable.end()) {
        return std::nullopt;
    }
    return entryOf(*this).caseName;
}

std::string KartoCommand::displayName() const {
    return kind_ == Kind::moveToZone ? fmt::format("Move to zone {}", zone_)
                                     : std::string(entryOf(*this).displayName);
}

std::uint32_t KartoCommand::hotkeyID() const {
    return kind_ == Kind::moveToZone ? zoneIDBase + static_cast<std::uint32_t>(std::max(zone_, 0))
                                     : entryOf(*this).hotkeyID;
}

std::string KartoCommand::caseName() const {
    return kind_ == Kind::moveToZone ? fmt::format("moveToZone({})", zone_)
                                     : std::string(entryOf(*this).caseName);
}

} // namespace karto
