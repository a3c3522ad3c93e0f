#include "Karto/Adapters/HotkeyService.h"
#include "Support/MemoryDesktop.h"

#include <gmock/gmock.h>

#include <utility>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t tKey = 17;
constexpr std::uint32_t fKey = 3;
constexpr std::uint32_t tabKey = 48;
constexpr std::uint32_t fiveKey = 23;

class HotkeyServiceTest : public ::testing::Test {
protected:
    void registerDefaults() {
        service.registerHotkeys(
            ModifierSet::allModifiers, CommandKey::defaults(),
            [this](const KartoCommand& command) { received.push_back(command.caseName()); });
    }

    MemoryDesktop desktop;
    HotkeyService service{desktop};
    std::vector<std::string> received;
};

} // namespace

TEST_F(HotkeyServiceTest, claimsEveryCommandTheDigitsAndEscapeInOrder) {
    registerDefaults();
    std::vector<std::uint32_t> ids;
    for (const HotKey& hotKey : desktop.hotKeys()) {
        EXPECT_EQ(hotKey.modifierMask, 0x1B00U);
        ids.push_back(hotKey.id);
    }
    EXPECT_THAT(ids, ElementsAre(1, 2, 3, 4, 5, 6, 9, 7, 101, 102, 103, 104, 105, 106, 107, 108, 109, 8));
    EXPECT_THAT(service.failedRegistrations(), IsEmpty());

    for (const auto code : {fiveKey, tabKey, escapeKeyCode}) {
        EXPECT_TRUE(desktop.press({.code = code}));
    }
    EXPECT_FALSE(desktop.press({.code = fiveKey, .modifierMask = HotKeyMask::shift}));
    EXPECT_THAT(received, ElementsAre("moveToZone(5)", "cycleWindows", "cancelCycling"));
}

TEST_F(HotkeyServiceTest, rebindingLetsCommandsTradeTheirKeys) {
    registerDefaults();
    auto keys = CommandKey::defaults();
    std::swap(keys.at(KartoCommand::tidy), keys.at(KartoCommand::fillDisplay));
    service.rebind(ModifierSet::shift | ModifierSet::control, keys);
    EXPECT_THAT(service.failedRegistrations(), IsEmpty());
    EXPECT_FALSE(desktop.press({.code = tKey}));
    constexpr auto mask = HotKeyMask::shift | HotKeyMask::control;
    EXPECT_TRUE(desktop.press({.code = tKey, .modifierMask = mask}));
    EXPECT_TRUE(desktop.press({.code = fKey, .modifierMask = mask}));
    EXPECT_THAT(received, ElementsAre("fillDisplay", "tidy"));
}

TEST_F(HotkeyServiceTest, rebindingTouchesOnlyWhatChanged) {
    registerDefaults();
    const auto claimed = desktop.hotKeys();
    auto keys = CommandKey::defaults();
    if (const auto y = CommandKey::named("y")) {
        keys.insert_or_assign(KartoCommand::tidy, *y);
    }
    service.rebind(ModifierSet::allModifiers, keys);
    // The desktop lists them in the order in which they were claimed.
    auto expected = claimed;
    std::erase_if(expected, [](const HotKey& hotKey) { return hotKey.keyCode == tKey; });
    expected.push_back({.keyCode = 16, .modifierMask = 0x1B00, .id = KartoCommand::tidy.hotkeyID()});
    EXPECT_EQ(desktop.hotKeys(), expected);

    service.release();
    EXPECT_THAT(desktop.hotKeys(), IsEmpty());
    service.rebind(ModifierSet::allModifiers, CommandKey::defaults());
    EXPECT_EQ(desktop.hotKeys(), claimed);
}

TEST_F(HotkeyServiceTest, commandsWithoutAKeyOfTheirOwnAreReported) {
    registerDefaults();
    auto keys = CommandKey::defaults();
    if (const auto escape = CommandKey::named("escape")) {
        keys.insert_or_assign(KartoCommand::snapToZone, *escape);
    }
    keys.erase(KartoCommand::expandZone);
    service.rebind(ModifierSet::allModifiers, keys);
    EXPECT_THAT(service.failedRegistrations(),
                ElementsAre(KartoCommand::expandZone, KartoCommand::cancelCycling));
}

} // namespace karto::testing
