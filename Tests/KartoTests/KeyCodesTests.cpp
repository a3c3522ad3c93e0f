#include "Karto/Adapters/KeyCodes.h"

#include <gtest/gtest.h>

#include <set>

namespace karto::testing {

TEST(KeyCodes, everyKeyHasACodeOfItsOwn) {
    std::set<std::uint32_t> codes;
    for (const auto name : CommandKey::vocabulary) {
        const auto code = carbonKeyCode(CommandKey::named(name).value());
        ASSERT_TRUE(code) << name;
        EXPECT_TRUE(codes.insert(*code).second) << name;
    }
    for (const auto& [digit, code] : ZoneDigits::codes) {
        EXPECT_TRUE(codes.insert(code).second) << digit;
    }
    EXPECT_EQ(carbonKeyCode(CommandKey::named("escape").value()), escapeKeyCode);
}

TEST(KeyCodes, masksAndFlagsNameTheFourModifiers) {
    EXPECT_EQ(carbonFlags(ModifierSet::allModifiers), 0x1B00U);
    EXPECT_EQ(carbonFlags(ModifierSet::shift | ModifierSet::option), 0x0A00U);
    EXPECT_EQ(carbonFlags({}), 0U);

    EXPECT_EQ(modifierSet({0x20000}), ModifierSet::shift);
    EXPECT_EQ(modifierSet({0x40000}), ModifierSet::control);
    EXPECT_EQ(modifierSet({0x80000}), ModifierSet::option);
    EXPECT_EQ(modifierSet({0x100000}), ModifierSet::command);
    constexpr std::uint32_t capsLock = 0x10000;
    constexpr std::uint32_t keypad = 0x200000;
    EXPECT_EQ(modifierSet({capsLock | keypad}), ModifierSet());
}

} // namespace karto::testing
