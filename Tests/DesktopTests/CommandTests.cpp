#include "DesktopTest.h"

#include <algorithm>

namespace karto::desktop {

using CommandTest = ManagerTest;
INSTANTIATE_TEST_SUITE_P(On, CommandTest, onEveryManager, managerName);

TEST_P(CommandTest, everyMoveTakesTheFocusedWindowToItsPlaceOnTwoDisplays) {
    startKarto();
    const Application window = Application::probe(desktop, "plain", "alpha", somewhere);

    struct Step {
        std::string key;
        std::string command;
        Rect frame;
    };

    const std::vector<Step> steps{
        {"AE01", "moveToZone(1)", zone::one},
        {"AE02", "moveToZone(2)", zone::two},
        {"UP", "expandZone", zone::rightOfStudio},
        {"UP", "expandZone", zone::studio},
        {"DOWN", "shrinkZone", zone::rightOfStudio},
        {"DOWN", "shrinkZone", zone::two},
        {"RGHT", "nextZone", zone::three},
        {"RGHT", "nextZone", zone::four},
        {"AC04", "fillDisplay", zone::tower},
        {"AE05", "moveToZone(5)", zone::five},
        {"RGHT", "nextZone", zone::one},
        {"LEFT", "previousZone", zone::five},
        {"AE03", "moveToZone(3)", zone::three},
        {"AC04", "fillDisplay", zone::studio},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.command);
        const auto outcome = Outcome::in(press(step.key, step.command));
        ASSERT_TRUE(outcome);
        EXPECT_TRUE(outcome->accepted);
        EXPECT_TRUE(takes(window, step.frame));
        EXPECT_TRUE(fits(outcome->result, step.frame)) << "the log tells another frame";
    }
    desktop.x().place(window.window(), {.x = 750, .y = 500, .width = 400, .height = 260});
    require("a stray window", [&] { return fits(window.frame(), {750, 500, 400, 260}); });
    press("AC01", "snapToZone");
    EXPECT_TRUE(takes(window, zone::three));

    EXPECT_NE(press("AE09", "moveToZone(9)").find("no destination found for frame"), std::string::npos);
    EXPECT_TRUE(takes(window, zone::three));
}

TEST_P(CommandTest, tidyDealsTheWindowsOfOneDisplayOverItsZones) {
    startKarto();
    const Application elsewhere =
        Application::probe(desktop, "plain", "elsewhere", {.x = 1400, .y = 90, .width = 300, .height = 200});
    const Rect untouched = elsewhere.frame().value();
    std::vector<Application> windows;
    for (const std::string name : {"alpha", "beta", "gamma", "delta"}) {
        windows.push_back(Application::probe(desktop, "plain", name, somewhere));
    }
    EXPECT_NE(press("AD05", "tidy")
                  .find(R"(laid out 4 window(s) on display "Studio" across 3 zone(s), 4 accepted)"),
              std::string::npos);
    EXPECT_TRUE(takes(windows.back(), zone::one)) << "the frontmost window comes first";
    for (const auto& [place, count] : {std::pair{zone::one, 2}, {zone::two, 1}, {zone::three, 1}}) {
        EXPECT_EQ(std::ranges::count_if(windows, [&](const auto& w) { return fits(w.frame(), place); }),
                  count);
    }
    EXPECT_EQ(elsewhere.frame(), untouched);
}

TEST_P(CommandTest, theSwitcherRaisesTheOtherWindowOfTheZoneUnlessCancelled) {
    startKarto();
    const Application below = Application::probe(desktop, "plain", "below", somewhere);
    press("AE01", "moveToZone(1)");
    const Application above = Application::probe(desktop, "plain", "above", somewhere);
    press("AE01", "moveToZone(1)");

    keys.holdHyper();
    keys.tap("TAB");
    keys.tap("ESC");
    keys.releaseHyper();
    EXPECT_TRUE(karto->log().next("switcher: cancelled, nothing raised"));
    EXPECT_EQ(desktop.x().activeWindow(), above.window());

    keys.chord("TAB");
    EXPECT_TRUE(eventually([&] { return desktop.x().activeWindow() == below.window(); }));
}

} // namespace karto::desktop
