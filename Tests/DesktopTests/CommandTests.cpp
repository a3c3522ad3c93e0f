#include "DesktopTest.h"

#include <algorithm>
#include <array>
#include <utility>

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
        {.key = "AE01", .command = "moveToZone(1)", .frame = zone::one},
        {.key = "AE02", .command = "moveToZone(2)", .frame = zone::two},
        {.key = "UP", .command = "expandZone", .frame = zone::rightOfStudio},
        {.key = "UP", .command = "expandZone", .frame = zone::studio},
        {.key = "DOWN", .command = "shrinkZone", .frame = zone::rightOfStudio},
        {.key = "DOWN", .command = "shrinkZone", .frame = zone::two},
        {.key = "RGHT", .command = "nextZone", .frame = zone::three},
        {.key = "RGHT", .command = "nextZone", .frame = zone::four},
        {.key = "AC04", .command = "fillDisplay", .frame = zone::tower},
        {.key = "AE05", .command = "moveToZone(5)", .frame = zone::five},
        {.key = "RGHT", .command = "nextZone", .frame = zone::one},
        {.key = "LEFT", .command = "previousZone", .frame = zone::five},
        {.key = "AE03", .command = "moveToZone(3)", .frame = zone::three},
        {.key = "AC04", .command = "fillDisplay", .frame = zone::studio},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.command);
        const std::string line = press(step.key, step.command);
        EXPECT_TRUE(fits(Outcome::in(line).value_or(Outcome{}).target, step.frame)) << line;
        EXPECT_TRUE(takes(window, step.frame));
    }
    const Rect stray{.x = 750, .y = 500, .width = 400, .height = 260};
    desktop.x().place(window.window(), stray);
    require("a stray window", [&] { return fits(window.frame(), stray); });
    press("AC01", "snapToZone");
    EXPECT_TRUE(takes(window, zone::three));

    EXPECT_NE(press("AE09", "moveToZone(9)").find("no destination found for frame"), std::string::npos);
    EXPECT_TRUE(takes(window, zone::three));
}

TEST_P(CommandTest, tidyDealsTheWindowsOfOneDisplayOverItsZones) {
    startKarto();
    const Application elsewhere =
        Application::probe(desktop, "plain", "elsewhere", {.x = 1400, .y = 90, .width = 300, .height = 200});
    const Rect untouched = elsewhere.frame();
    std::vector<Application> windows;
    for (const std::string name : {"alpha", "beta", "gamma", "delta"}) {
        windows.push_back(Application::probe(desktop, "plain", name, somewhere));
    }
    // A server that is too busy to tell of the windows in time has none.
    EXPECT_TRUE(eventually([&] {
        return press("AD05", "tidy")
            .contains(R"(laid out 4 window(s) on display "Studio" across 3 zone(s), )");
    }));
    EXPECT_TRUE(takes(windows.back(), zone::one)) << "the frontmost window comes first";
    const auto windowsIn = [&](const Rect& place) {
        return std::ranges::count_if(windows,
                                     [&](const auto& window) { return fits(window.frame(), place); });
    };
    const std::array<std::pair<Rect, int>, 3> dealt{{{zone::one, 2}, {zone::two, 1}, {zone::three, 1}}};
    for (const auto& deal : dealt) {
        EXPECT_TRUE(eventually([&] { return windowsIn(deal.first) == deal.second; }))
            << windowsIn(deal.first);
    }
    EXPECT_EQ(elsewhere.frame(), untouched);
}

} // namespace karto::desktop
