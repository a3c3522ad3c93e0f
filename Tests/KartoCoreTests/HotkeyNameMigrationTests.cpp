#include "KartoCore/HotkeyNameMigration.h"

#include <gtest/gtest.h>

#include <tuple>

namespace karto::HotkeyNameMigration {

namespace {

TEST(HotkeyNameMigration, formerNamesGiveWayToCurrentOnes) {
    using Map = std::map<std::string, std::string>;
    const std::vector<std::tuple<KeyTable, KeyTable, std::vector<Rename>>> table{
        {std::nullopt, std::nullopt, {}},
        {Map{{"tidy", "t"}, {"nonsense", "q"}}, Map{{"tidy", "t"}, {"nonsense", "q"}}, {}},
        {Map{{"NextVariant", "k"}}, Map{{"NextVariant", "k"}}, {}},
        {Map{{"nextVariant", "k"}},
         Map{{"expandZone", "k"}},
         {{.oldName = "nextVariant", .newName = "expandZone", .newNameAlsoPresent = false}}},
        {Map{{"nextVariant", "k"}, {"expandZone", "j"}},
         Map{{"expandZone", "j"}},
         {{.oldName = "nextVariant", .newName = "expandZone", .newNameAlsoPresent = true}}},
        {Map{{"previousVariant", "p"}, {"nextVariant", "n"}, {"tidy", "t"}},
         Map{{"shrinkZone", "p"}, {"expandZone", "n"}, {"tidy", "t"}},
         {{.oldName = "nextVariant", .newName = "expandZone", .newNameAlsoPresent = false},
          {.oldName = "previousVariant", .newName = "shrinkZone", .newNameAlsoPresent = false}}},
    };
    for (const auto& [written, read, expected] : table) {
        EXPECT_EQ(applied(written), read);
        EXPECT_EQ(renames(written), expected);
    }
}

} // namespace

} // namespace karto::HotkeyNameMigration
