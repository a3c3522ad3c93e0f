#include "KartoCore/HotkeyNameMigration.h"

#include <gtest/gtest.h>

namespace karto::HotkeyNameMigration {

namespace {

TEST(HotkeyNameMigration, formerNamesGiveWayToCurrentOnes) {
    struct Row {
        KeyTable written;
        KeyTable read;
        std::vector<Rename> renames;
    };

    using Map = std::map<std::string, std::string>;
    const Row rows[] = {
        {std::nullopt, std::nullopt, {}},
        {Map{{"tidy", "t"}, {"nonsense", "q"}}, Map{{"tidy", "t"}, {"nonsense", "q"}}, {}},
        {Map{{"NextVariant", "k"}}, Map{{"NextVariant", "k"}}, {}},
        {Map{{"nextVariant", "k"}}, Map{{"expandZone", "k"}}, {{"nextVariant", "expandZone", false}}},
        {Map{{"nextVariant", "k"}, {"expandZone", "j"}},
         Map{{"expandZone", "j"}},
         {{"nextVariant", "expandZone", true}}},
        {Map{{"previousVariant", "p"}, {"nextVariant", "n"}, {"tidy", "t"}},
         Map{{"shrinkZone", "p"}, {"expandZone", "n"}, {"tidy", "t"}},
         {{"nextVariant", "expandZone", false}, {"previousVariant", "shrinkZone", false}}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(applied(row.written), row.read) << &row - rows;
        EXPECT_EQ(renames(row.written), row.renames) << &row - rows;
    }
}

} // namespace

} // namespace karto::HotkeyNameMigration
