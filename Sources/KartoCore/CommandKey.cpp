#include "KartoCore/CommandKey.h"

#include <algorithm>
#include <utility>

namespace karto {

namespace {

constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";

struct NamedKey {
    std::string_view name;
    std::string_view glyph;
};

constexpr std::array<NamedKey, 8> namedKeys{{
    {.name = "left", .glyph = "←"},
    {.name = "right", .glyph = "→"},
    {.name = "up", .glyph = "↑"},
    {.name = "down", .glyph = "↓"},
    {.name = "space", .glyph = "␣"},
    {.name = "return", .glyph = "↩"},
    {.name = "tab", .glyph = "⇥"},
    {.name = "escape", .glyph = "⎋"},
}};

constexpr std::array<std::string_view, 34> makeVocabulary() {
    std::array<std::string_view, 34> names;
    static_assert(letters.size() + namedKeys.size() == names.size());
    for (std::size_t i = 0; i < letters.size(); ++i) {
        names[i] = letters.substr(i, 1);
    }
    std::ranges::transform(namedKeys, names.begin() + letters.size(), &NamedKey::name);
    return names;
}

} // namespace

constinit const std::array<std::string_view, 34> CommandKey::vocabulary = makeVocabulary();

std::optional<CommandKey> CommandKey::named(std::string_view name) {
    const auto* const found = std::ranges::find(vocabulary, name);
    return found == vocabulary.end() ? std::nullopt : std::optional(CommandKey(*found));
}

bool CommandKey::isDigit(std::string_view text) {
    return text.size() == 1 && text.front() >= '0' && text.front() <= '9';
}

const std::map<KartoCommand, CommandKey>& CommandKey::defaults() {
    static const std::map<KartoCommand, CommandKey> keys{
        {KartoCommand::nextZone, CommandKey("right")}, {KartoCommand::previousZone, CommandKey("left")},
        {KartoCommand::expandZone, CommandKey("up")},  {KartoCommand::shrinkZone, CommandKey("down")},
        {KartoCommand::tidy, CommandKey("t")},         {KartoCommand::fillDisplay, CommandKey("f")},
        {KartoCommand::snapToZone, CommandKey("a")},   {KartoCommand::cycleWindows, CommandKey("tab")},
    };
    return keys;
}

std::optional<KartoCommand> CommandKey::holder(const CommandKey& key,
                                               const std::map<KartoCommand, CommandKey>& keys,
                                               const KartoCommand& besides) {
    for (const KartoCommand& command : KartoCommand::configurable) {
        const auto held = keys.find(command);
        if (command != besides && held != keys.end() && held->second == key) {
            return command;
        }
    }
    return std::nullopt;
}

std::string CommandKey::glyph() const {
    const auto* const named = std::ranges::find(namedKeys, name_, &NamedKey::name);
    return std::string(named == namedKeys.end() ? capitals.substr(letters.find(name_), 1) : named->glyph);
}

} // namespace karto
