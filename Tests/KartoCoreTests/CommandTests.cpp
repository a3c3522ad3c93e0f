#include "KartoCore/CommandKey.h"
#include "KartoCore/KartoCommand.h"
#include "KartoCore/ModifierSet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace karto {

namespace {

using ::testing::ElementsAre;

TEST(KartoCommand, isFoundByItsIdentifierAndItsNameInTheConfiguration) {
    std::vector commands(KartoCommand::configurable.begin(), KartoCommand::configurable.end());
    commands.insert(commands.end(), {KartoCommand::cancelCycling, KartoCommand::moveToZone(3)});
    for (const KartoCommand& command : commands) {
        const bool isConfigurable = command.configName().has_value();
        EXPECT_EQ(KartoCommand::withHotkeyID(command.hotkeyID()), command) << command.caseName();
        EXPECT_EQ(KartoCommand::named(command.caseName()),
                  isConfigurable ? std::optional(command) : std::nullopt);
    }
    EXPECT_EQ(KartoCommand::cancelCycling.displayName(), "Cancel cycling");
    EXPECT_EQ(KartoCommand::moveToZone(3).displayName(), "Move to zone 3");
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

TEST(CommandKey, onlyTheTenDigitsAreDigits) {
    for (const std::string_view digit : {"0", "5", "9"}) {
        EXPECT_TRUE(CommandKey::isDigit(digit)) << digit;
    }
    for (const std::string_view other : {"10", "", "x", "/", ":", "٣", "５"}) {
        EXPECT_FALSE(CommandKey::isDigit(other)) << other;
    }
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

} // namespace

} // namespace karto
