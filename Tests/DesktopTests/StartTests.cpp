#include "DesktopTest.h"

namespace karto::desktop {

using StartTest = DesktopTest;

TEST_F(StartTest, theBannerListsTheShortcutsAndTheLogTheState) {
    KartoProcess::writeConfiguration(desktop, sampleConfiguration + "\n[hotkeys]\n"
                                                                    "modifiers = [\"option\", \"control\"]\n"
                                                                    "keys = { tidy = \"y\" }\n");
    launchKarto();
    EXPECT_EQ(karto->waitForBanner(), "Karto is running. The hyper key is control+option.\n"
                                      "  hyper + →  Next zone\n"
                                      "  hyper + ←  Previous zone\n"
                                      "  hyper + ↑  Expand to next zone\n"
                                      "  hyper + ↓  Shrink to previous zone\n"
                                      "  hyper + Y  Tidy\n"
                                      "  hyper + F  Fill the display\n"
                                      "  hyper + A  Snap to its zone\n"
                                      "  hyper + ⇥  Cycle windows in the zone\n"
                                      "  hyper + 1…9  Move a window to its zone\n");
    EXPECT_TRUE(karto->log().next("hotkey registration: "));
    EXPECT_TRUE(karto->log().next(
        "startup: config loaded, profile \"Home\", zones 5, ring 5, displays [Studio, Tower]"));
}

TEST_F(StartTest, aFirstRunIsReportedHasTheDefaultsAndOpensTheSettings) {
    std::filesystem::remove(KartoProcess::configurationPath(desktop));
    startKarto();
    EXPECT_TRUE(karto->log().next(
        "hotkey registration: all commands registered for modifiers [shift+command+control+option]"));
    EXPECT_TRUE(karto->log().next("startup: no config loaded — no config file yet"));
    closeOwnWindow();
}

TEST_F(StartTest, aHandEditOfTheConfigurationCountsAtOnce) {
    startKarto();
    const Application window = Application::probe(desktop, "plain", "alpha", somewhere);
    KartoProcess::writeConfiguration(desktop, R"(profile = { name = "Narrow" }
[[display]]
name = "Studio"
orientation = "landscape"
split = { axis = "vertical", at = 0.25, first = {}, second = {} }
)");
    EXPECT_TRUE(karto->log().next("config reload: config loaded, profile \"Narrow\", zones 2, ring 2"));
    EXPECT_TRUE(pressUntilFits("AE01", window, {.x = 0, .y = 0, .width = 320, .height = 800}));
}

} // namespace karto::desktop
