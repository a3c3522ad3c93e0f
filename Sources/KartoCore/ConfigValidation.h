#pragma once
// Everything that can be wrong with a configuration that could be read. Messages are final: they are shown as
// they are.

#include "KartoCore/LayoutTree.h"

#include <string>
#include <variant>
#include <vector>

namespace karto {

namespace ConfigErrors {

struct DuplicateDisplayBinding {
    std::string name;
    Orientation orientation = Orientation::landscape;

    bool operator==(const DuplicateDisplayBinding&) const = default;
};

struct SplitOutOfBounds {
    std::string display;

    bool operator==(const SplitOutOfBounds&) const = default;
};

struct BadModifier {
    std::string name;

    bool operator==(const BadModifier&) const = default;
};

struct UnknownCommand {
    std::string name;

    bool operator==(const UnknownCommand&) const = default;
};

struct BadCommandKey {
    std::string command;
    std::string key;

    bool operator==(const BadCommandKey&) const = default;
};

struct DigitAsCommandKey {
    std::string command;

    bool operator==(const DigitAsCommandKey&) const = default;
};

struct DuplicateCommandKey {
    std::string key;
    // Configuration names, ascending.
    std::vector<std::string> commands;

    bool operator==(const DuplicateCommandKey&) const = default;
};

struct OverlayOutOfRange {
    std::string field;
    double value = 0;

    bool operator==(const OverlayOutOfRange&) const = default;
};

struct BadOverlayColor {
    std::string text;

    bool operator==(const BadOverlayColor&) const = default;
};

struct NoDisplays {
    bool operator==(const NoDisplays&) const = default;
};

struct UnnamedDisplay {
    bool operator==(const UnnamedDisplay&) const = default;
};

struct NoModifiers {
    bool operator==(const NoModifiers&) const = default;
};

struct TooFewModifiers {
    bool operator==(const TooFewModifiers&) const = default;
};

} // namespace ConfigErrors

using ConfigError =
    std::variant<ConfigErrors::DuplicateDisplayBinding, ConfigErrors::SplitOutOfBounds,
                 ConfigErrors::BadModifier, ConfigErrors::UnknownCommand, ConfigErrors::BadCommandKey,
                 ConfigErrors::DigitAsCommandKey, ConfigErrors::DuplicateCommandKey,
                 ConfigErrors::OverlayOutOfRange, ConfigErrors::BadOverlayColor, ConfigErrors::NoDisplays,
                 ConfigErrors::UnnamedDisplay, ConfigErrors::NoModifiers, ConfigErrors::TooFewModifiers>;

// One line for the menu, the settings window and the check log.
std::string message(const ConfigError& error);

} // namespace karto
