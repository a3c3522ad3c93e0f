#include "Karto/Adapters/KeyCodes.h"
#include "Karto/Platform/HotKeyCenter.h"

#include <gtest/gtest.h>

#include <set>

namespace karto::testing {

TEST(KeyCodes, everyKeyHasACodeOfItsOwn) {
    std::set<std::optional<std::uint32_t>> codes;
    for (const auto name : CommandKey::vocabulary) {
        EXPECT_TRUE(codes.insert(CommandKey::named(name).and_then(carbonKeyCode)).second) << name;
    }
    for (const auto& [digit, code] : ZoneDigits::codes) {
        EXPECT_TRUE(codes.insert(code).second) << digit;
    }
    EXPECT_FALSE(codes.contains(std::nullopt));
    EXPECT_EQ(CommandKey::named("escape").and_then(carbonKeyCode), escapeKeyCode);
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
