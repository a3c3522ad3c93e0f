#pragma once
// The closed set of commands, with their names and the identifiers of their shortcuts.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace karto {

class KartoCommand {
public:
    enum class Kind : std::uint8_t {
        moveToZone,
        nextZone,
        previousZone,
        expandZone,
        shrinkZone,
        tidy,
        fillDisplay,
        snapToZone,
        cycleWindows,
        cancelCycling,
    };

    static const KartoCommand nextZone;
    static const KartoCommand previousZone;
    static const KartoCommand expandZone;
    static const KartoCommand shrinkZone;
    static const KartoCommand tidy;
    static const KartoCommand fillDisplay;
    static const KartoCommand snapToZone;
    static const KartoCommand cycleWindows;
    static const KartoCommand cancelCycling;

    static constexpr KartoCommand moveToZone(int zone) { return {Kind::moveToZone, zone}; }

    // The commands whose key the user may choose, in the order of registration and listing.
    static const std::array<KartoCommand, 8> configurable;

    // The configurable command with exactly this configuration name.
    static std::optional<KartoCommand> named(std::string_view configName);
    // The command of a shortcut identifier: 1 to 9, and 101 to 109 for the zones.
    static std::optional<KartoCommand> withHotkeyID(std::uint32_t id);

    [[nodiscard]] constexpr Kind kind() const { return kind_; }

    // The zone number of moveToZone; 0 for every other command.
    [[nodiscard]] constexpr int zone() const { return zone_; }

    // The command's key in the configuration file; absent when its key is fixed.
    [[nodiscard]] std::optional<std::string_view> configName() const;
    [[nodiscard]] std::string displayName() const;
    [[nodiscard]] std::uint32_t hotkeyID() const;
    // The case name, moveToZone with its number: "tidy", "moveToZone(3)".
    [[nodiscard]] std::string caseName() const;

    auto operator<=>(const KartoCommand&) const = default;

private:
    constexpr KartoCommand(Kind kind, int zone)
        : kind_(kind)
        , zone_(zone) {}

    Kind kind_;
    int zone_;
};

inline constexpr KartoCommand KartoCommand::nextZone{Kind::nextZone, 0};
inline constexpr KartoCommand KartoCommand::previousZone{Kind::previousZone, 0};
inline constexpr KartoCommand KartoCommand::expandZone{Kind::expandZone, 0};
inline constexpr KartoCommand KartoCommand::shrinkZone{Kind::shrinkZone, 0};
inline constexpr KartoCommand KartoCommand::tidy{Kind::tidy, 0};
inline constexpr KartoCommand KartoCommand::fillDisplay{Kind::fillDisplay, 0};
inline constexpr KartoCommand KartoCommand::snapToZone{Kind::snapToZone, 0};
inline constexpr KartoCommand KartoCommand::cycleWindows{Kind::cycleWindows, 0};
inline constexpr KartoCommand KartoCommand::cancelCycling{Kind::cancelCycling, 0};
inline constexpr std::array<KartoCommand, 8> KartoCommand::configurable{
    nextZone, previousZone, expandZone, shrinkZone, tidy, fillDisplay, snapToZone, cycleWindows};

} // namespace karto
