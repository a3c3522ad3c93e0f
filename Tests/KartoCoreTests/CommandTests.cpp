#include "KartoCore/CommandKey.h"
#include "KartoCore/KartoCommand.h"
#include "KartoCore/ModifierSet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

namespace karto {

namespace {

using ::testing::ElementsAre;

TEST(KartoCommand, namesAndIdentifiersFollowTheTable) {
    using Row =
        std::tuple<KartoCommand, std::optional<std::string_view>, std::string, std::string, std::uint32_t>;
    const std::vector<Row> table{
        {KartoCommand::nextZone, "nextZone", "Next zone", "nextZone", 1},
        {KartoCommand::previousZone, "previousZone", "Previous zone", "previousZone", 2},
        {KartoCommand::expandZone, "expandZone", "Expand to next zone", "expandZone", 3},
        {KartoCommand::shrinkZone, "shrinkZone", "Shrink to previous zone", "shrinkZone", 4},
        {KartoCommand::tidy, "tidy", "Tidy", "tidy", 5},
        {KartoCommand::fillDisplay, "fillDisplay", "Fill the display", "fillDisplay", 6},
        {KartoCommand::snapToZone, "snapToZone", "Snap to its zone", "snapToZone", 9},
        {KartoCommand::cycleWindows, "cycleWindows", "Cycle windows in the zone", "cycleWindows", 7},
        {KartoCommand::cancelCycling, std::nullopt, "Cancel cycling", "cancelCycling", 8},
        {KartoCommand::moveToZone(3), std::nullopt, "Move to zone 3", "moveToZone(3)", 103},
    };
    for (const auto& [command, configName, displayName, caseName, hotkeyID] : table) {
        SCOPED_TRACE(caseName);
        EXPECT_EQ(command.configName(), configName);
        EXPECT_EQ(command.displayName(), displayName);
        EXPECT_EQ(command.caseName(), caseName);
        EXPECT_EQ(command.hotkeyID(), hotkeyID);
        EXPECT_EQ(KartoCommand::withHotkeyID(hotkeyID), command);
        EXPECT_EQ(KartoCommand::named(caseName), configName ? std::optional(command) : std::nullopt);
    }
    EXPECT_EQ(KartoCommand::moveToZone(-4).hotkeyID(), 100U);
    EXPECT_EQ(KartoCommand::named("NextZone"), std::nullopt);
    for (const std::uint32_t id : {0U, 10U, 100U, 110U, 0xFFFFFFFFU}) {
        EXPECT_EQ(KartoCommand::withHotkeyID(id), std::nullopt) << id;
    }
}

TEST(CommandKey, vocabularyIsLettersThenNamedKeys) {
    std::string names;
    for (const std::string_view name : CommandKey::vocabulary) {
        names += std::string(name) + " ";
        EXPECT_EQ(CommandKey::named(name)->name(), name);
    }
    EXPECT_EQ(names, "a b c d e f g h i j k l m n o p q r s t u v w x y z "
                     "left right up down space return tab escape ");
    for (const std::string_view name : {"T", " t", "1", "F1", "", "Left", "ab"}) {
        EXPECT_EQ(CommandKey::named(name), std::nullopt) << name;
    }
}

TEST(CommandKey, glyphsAndDigits) {
    std::string glyphs;
    for (const std::string_view name :
         {"q", "left", "right", "up", "down", "space", "return", "tab", "escape"}) {
        glyphs += CommandKey::named(name)->glyph();
    }
    EXPECT_EQ(glyphs, "Q←→↑↓␣↩⇥⎋");
    for (const std::string_view digit : {"0", "5", "9"}) {
        EXPECT_TRUE(CommandKey::isDigit(digit)) << digit;
    }
    for (const std::string_view other : {"10", "", "x", "/", ":", "٣", "５"}) {
        EXPECT_FALSE(CommandKey::isDigit(other)) << other;
    }
}

TEST(CommandKey, everyConfigurableCommandHasItsOwnDefault) {
    std::string defaults;
    for (const auto& [command, key] : CommandKey::defaults()) {
        defaults += command.caseName() + "=" + std::string(key.name()) + " ";
    }
    EXPECT_EQ(defaults, "nextZone=right previousZone=left expandZone=up shrinkZone=down tidy=t fillDisplay=f "
                        "snapToZone=a cycleWindows=tab ");
}

TEST(CommandKey, holderIsTheFirstOtherCommandWithTheKey) {
    const CommandKey t = *CommandKey::named("t");
    const std::map<KartoCommand, CommandKey> keys{{KartoCommand::tidy, t}, {KartoCommand::fillDisplay, t}};
    EXPECT_EQ(CommandKey::holder(t, keys, KartoCommand::tidy), KartoCommand::fillDisplay);
    EXPECT_EQ(CommandKey::holder(t, keys, KartoCommand::fillDisplay), KartoCommand::tidy);
    EXPECT_EQ(CommandKey::holder(t, keys, KartoCommand::nextZone), KartoCommand::tidy);
    EXPECT_EQ(CommandKey::holder(*CommandKey::named("a"), keys, KartoCommand::tidy), std::nullopt);
}

TEST(ModifierSet, namesAndGlyphsStandInFixedOrder) {
    EXPECT_EQ(ModifierSet::allModifiers.glyphs(), "⇧⌘⌃⌥");
    const auto parsed = ModifierSet::named(std::vector<std::string>{"option", "shift", "option"});
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->rawValue(), 9);
    EXPECT_EQ(parsed->count(), 2);
    EXPECT_THAT(parsed->names(), ElementsAre("shift", "option"));
    EXPECT_EQ(ModifierSet::named({}), ModifierSet());
}

TEST(ModifierSet, firstUnknownNameIsTheError) {
    const auto parsed = ModifierSet::named(std::vector<std::string>{"shift", "Control", "cmd"});
    EXPECT_EQ(parsed.error().name, "Control");
}

} // namespace

} // namespace karto
