#include "DesktopTest.h"

#include <algorithm>

namespace karto::desktop {

class InputTest : public DesktopTest {
protected:
    Application window = Application::probe(desktop, "plain", "alpha", somewhere);
};

TEST_F(InputTest, shortcutsWorkWithNumLockAndCapsLockOn) {
    startKarto();
    keys.setLocks(true);
    press("AE03", "moveToZone(3)");
    EXPECT_TRUE(takes(window, zone::three));
    press("LEFT", "previousZone");
    EXPECT_TRUE(takes(window, zone::two));
    keys.setLocks(false);
}

TEST_F(InputTest, aHeldKeyGivesOneCommand) {
    desktop.run({"xset", "r", "rate", "100", "60"});
    startKarto();
    press("AE01", "moveToZone(1)");
    keys.holdHyper();
    keys.press("RGHT");
    // The duration is the matter: long enough for some twenty repetitions.
    std::this_thread::sleep_for(400ms);
    keys.release("RGHT");
    keys.releaseHyper();
    EXPECT_TRUE(takes(window, zone::two));
    keys.chord("AC04");
    ASSERT_TRUE(karto->log().next("command nextZone:"));
    const std::string after = karto->log().next("command ").value_or("");
    EXPECT_NE(after.find("fillDisplay"), std::string::npos) << after;
}

TEST_F(InputTest, aShortcutHeldByAnotherProgramIsReportedAndTheOthersWork) {
    xcb_grab_key(desktop.x().connection(), 0, desktop.x().root(), XCB_MOD_MASK_ANY, keys.codeOf("AD05"),
                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    desktop.x().settle();
    startKarto();
    EXPECT_TRUE(karto->log().next("hotkey registration: failed to claim [KartoCore.KartoCommand.tidy] for "
                                  "modifiers [shift+command+control+option]"));
    press("AE02", "moveToZone(2)");
    EXPECT_TRUE(takes(window, zone::two));
}

TEST_F(InputTest, shortcutsStayOnTheirPhysicalKeys) {
    startKarto();
    desktop.run({"setxkbmap", "fr"});
    press("AC01", "snapToZone");
    EXPECT_TRUE(takes(window, zone::one));

    // Another numbering of the keys, as another keyboard driver has it.
    const xcb_keycode_t before = keys.codeOf("RGHT");
    constexpr xcb_keycode_t rightOfEvdev = 114;
    const std::string numbering = before == rightOfEvdev ? "xfree86" : "evdev";
    desktop.run({"setxkbmap", "-keycodes", numbering + "+aliases(qwerty)"});
    const KeyPresser renumbered(desktop.x());
    ASSERT_NE(renumbered.codeOf("RGHT"), before);
    EXPECT_TRUE(eventually([&] {
        renumbered.chord("RGHT");
        return karto->log().next("command nextZone:", 300ms).has_value();
    }));
}

TEST_F(InputTest, shortcutsFollowTheModifiersToOtherKeys) {
    KartoProcess::writeConfiguration(desktop, sampleConfiguration +
                                                  "\n[hotkeys]\nmodifiers = [\"shift\", \"option\"]\n");
    startKarto();
    desktop.run({"setxkbmap", "-option", "altwin:swap_alt_win"});
    keys.hyper = {"LFSH", "LWIN"};
    EXPECT_TRUE(pressUntilFits("AE02", window, zone::two));
    // The claims of before do for a moment; while they are renewed a press is nobody's.
    EXPECT_TRUE(
        eventually([&] { return contentsOf(KartoProcess::logPath(desktop)).contains("(keyboard change)"); }));
    karto->log().rest();
    keys.hyper = {"LFSH", "LALT"};
    keys.chord("AE01");
    keys.hyper = {"LFSH", "LWIN"};
    press("AE03", "moveToZone(3)");
    EXPECT_TRUE(takes(window, zone::three));
    EXPECT_FALSE(contentsOf(KartoProcess::logPath(desktop)).contains("moveToZone(1)"));
}

// The manager holds the logo keys, and has shortcuts passed over with the key that comes next.
class LogoKeyTest : public DesktopTest {
protected:
    LogoKeyTest()
        : DesktopTest("icewm") {}

    bool isAnswered(const std::string& key, std::chrono::milliseconds within = patience) {
        keys.chord(key);
        return karto->log().next("moveToZone", within).has_value();
    }

    // Once the program has learned what the manager claims.
    bool isAnsweredInTheEnd(const std::string& key) {
        return eventually([&] { return isAnswered(key, 1s); });
    }
};

TEST_F(LogoKeyTest, everyKeyOfHyperMayBeTheLastOne) {
    startKarto();
    keys.hyper = {"LFSH", "LCTL", "LALT", "LWIN"};
    // The first key of another keyboard has the manager claim its keys anew.
    keys.tap("LFSH");
    require("the manager", [&] { return desktop.x().managerAnswers(patience); });
    EXPECT_TRUE(isAnsweredInTheEnd("AE01"));
    EXPECT_TRUE(isAnswered("AE01"));
    keys.hyper.back() = "RWIN";
    EXPECT_TRUE(isAnswered("AE02"));
    for (std::size_t i = 0; i < keys.hyper.size(); ++i) {
        std::ranges::rotate(keys.hyper, keys.hyper.begin() + 1);
        EXPECT_TRUE(isAnswered("AE03")) << keys.hyper.back();
    }
    desktop.killWindowManager();
    desktop.startWindowManager("icewm");
    EXPECT_TRUE(isAnsweredInTheEnd("AE02"));
    EXPECT_TRUE(isAnswered("AE01"));
}

class DisplayTest : public InputTest {};

TEST_F(DisplayTest, zonesComeAndGoWithTheirDisplay) {
    startKarto();
    ASSERT_TRUE(pressUntilFits("AE04", window, zone::four));
    press("AE01", "moveToZone(1)");
    if (!desktop.hasOutputs()) {
        GTEST_SKIP() << "the outputs of this server are fixed";
    }
    desktop.setConnected("Tower", false);
    EXPECT_TRUE(eventually([&] {
        keys.chord("AE04");
        const auto line = karto->log().next("command moveToZone(4):", 1s);
        return line && line->contains("no destination found");
    }));
    desktop.setConnected("Tower", true);
    EXPECT_TRUE(pressUntilFits("AE04", window, zone::four));
}

TEST_F(DisplayTest, zonesFollowThePanels) {
    startKarto();
    EXPECT_TRUE(pressUntilFits("AE05", window, zone::five));
    panel.signal(SIGTERM);
    EXPECT_TRUE(pressUntilFits("AC04", window, studioAndTower[1].area));
    const ChildProcess another = startPanel(desktop, studioAndTower[1].area, 29);
    EXPECT_TRUE(pressUntilFits("AC04", window, zone::tower));
}

} // namespace karto::desktop
