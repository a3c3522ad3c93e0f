#include "Karto/Adapters/HotkeyService.h"
#include "Support/MemoryDesktop.h"

#include <gmock/gmock.h>

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
        service_.registerHotkeys(
            ModifierSet::allModifiers, CommandKey::defaults(),
            [this](const KartoCommand& command) { received_.push_back(command.caseName()); });
    }

    MemoryDesktop desktop_;
    HotkeyService service_{desktop_};
    std::vector<std::string> received_;
};

CommandKeyMap defaultsWith(const KartoCommand& command, std::string_view key) {
    auto keys = CommandKey::defaults();
    keys.insert_or_assign(command, CommandKey::named(key).value());
    return keys;
}

} // namespace

TEST_F(HotkeyServiceTest, claimsEveryCommandTheDigitsAndEscapeInOrder) {
    registerDefaults();
    std::vector<std::uint32_t> ids;
    for (const HotKey& hotKey : desktop_.hotKeys()) {
        EXPECT_EQ(hotKey.modifierMask, 0x1B00U);
        ids.push_back(hotKey.id);
    }
    EXPECT_THAT(ids, ElementsAre(1, 2, 3, 4, 5, 6, 9, 7, 101, 102, 103, 104, 105, 106, 107, 108, 109, 8));
    EXPECT_THAT(service_.failedRegistrations(), IsEmpty());

    for (const auto code : {fiveKey, tabKey, escapeKeyCode}) {
        EXPECT_TRUE(desktop_.press({.code = code}));
    }
    EXPECT_FALSE(desktop_.press({.code = fiveKey, .modifierMask = HotKeyMask::shift}));
    EXPECT_THAT(received_, ElementsAre("moveToZone(5)", "cycleWindows", "cancelCycling"));
}

TEST_F(HotkeyServiceTest, reportsWhatOthersHoldUntilItIsFree) {
    desktop_.heldByOthers = {{.code = tKey}, {.code = fiveKey}};
    registerDefaults();
    EXPECT_THAT(service_.failedRegistrations(), ElementsAre(KartoCommand::tidy, KartoCommand::moveToZone(5)));
    EXPECT_EQ(desktop_.hotKeys().size(), 16U);

    desktop_.heldByOthers.clear();
    service_.rebind(ModifierSet::allModifiers, CommandKey::defaults());
    EXPECT_THAT(service_.failedRegistrations(), IsEmpty());
    EXPECT_TRUE(desktop_.press({.code = tKey}));
    EXPECT_THAT(received_, ElementsAre("tidy"));
}

TEST_F(HotkeyServiceTest, rebindingLetsCommandsTradeTheirKeys) {
    registerDefaults();
    auto keys = defaultsWith(KartoCommand::tidy, "f");
    keys.insert_or_assign(KartoCommand::fillDisplay, CommandKey::named("t").value());
    service_.rebind(ModifierSet::shift | ModifierSet::control, keys);
    EXPECT_THAT(service_.failedRegistrations(), IsEmpty());
    EXPECT_FALSE(desktop_.press({.code = tKey}));
    constexpr auto mask = HotKeyMask::shift | HotKeyMask::control;
    EXPECT_TRUE(desktop_.press({.code = tKey, .modifierMask = mask}));
    EXPECT_TRUE(desktop_.press({.code = fKey, .modifierMask = mask}));
    EXPECT_THAT(received_, ElementsAre("fillDisplay", "tidy"));
}

TEST_F(HotkeyServiceTest, commandsWithoutAKeyOfTheirOwnAreReported) {
    registerDefaults();
    auto keys = defaultsWith(KartoCommand::snapToZone, "escape");
    keys.erase(KartoCommand::expandZone);
    service_.rebind(ModifierSet::allModifiers, keys);
    EXPECT_THAT(service_.failedRegistrations(),
                ElementsAre(KartoCommand::expandZone, KartoCommand::cancelCycling));
}

TEST_F(HotkeyServiceTest, claimsEvenWhenNoPressWillArrive) {
    desktop_.deliversPresses = false;
    registerDefaults();
    EXPECT_TRUE(service_.eventHandlerInstallationFailed());
    EXPECT_EQ(desktop_.hotKeys().size(), 18U);
}

TEST(HotkeyService, givesEverythingUpAtItsEnd) {
    MemoryDesktop desktop;
    {
        HotkeyService service(desktop);
        service.registerHotkeys(ModifierSet::allModifiers, CommandKey::defaults(), {});
        EXPECT_TRUE(desktop.press({.code = tKey}));
    }
    EXPECT_THAT(desktop.hotKeys(), IsEmpty());
}

} // namespace karto::testing
