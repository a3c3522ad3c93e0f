#pragma once
// The names of the keys that can trigger a command. Every value names a key of the vocabulary.

#include "KartoCore/KartoCommand.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace karto {

class CommandKey {
public:
    // a to z, then left, right, up, down, space, return, tab, escape. No digits: they pick zones.
    static const std::array<std::string_view, 34> vocabulary;

    // Absent for a name outside the vocabulary; no trimming, no case folding.
    static std::optional<CommandKey> named(std::string_view name);

    // True for exactly one ASCII decimal digit.
    static bool isDigit(std::string_view text);

    // The default key of every configurable command.
    static const std::map<KartoCommand, CommandKey>& defaults();

    // The first configurable command other than `besides` that holds the key.
    static std::optional<KartoCommand> holder(const CommandKey& key,
                                              const std::map<KartoCommand, CommandKey>& keys,
                                              const KartoCommand& besides);

    // A name of the vocabulary; it lives as long as the program.
    [[nodiscard]] std::string_view name() const { return name_; }

    // What a person reads on the key: an arrow or sign, or the letter in upper case.
    [[nodiscard]] std::string glyph() const;

    bool operator==(const CommandKey&) const = default;

private:
    explicit CommandKey(std::string_view name)
        : name_(name) {}

    std::string_view name_;
};

} // namespace karto
