#include "DesktopTest.h"

namespace karto::desktop {

namespace {

// Two displays that end at the same height.
const std::vector<Output> level{{.name = "Studio", .area = {.x = 0, .y = 0, .width = 1280, .height = 800}},
                                {.name = "Tower", .area = {.x = 1280, .y = 0, .width = 600, .height = 800}}};

} // namespace

// A panel with a strut at the lower edge of Tower, and whatever panel the manager has of its own, without
// one.
class WorkAreaTest : public DesktopTest {
protected:
    using DesktopTest::DesktopTest;

    // Has a window fill the display, and expects it to end there.
    void expectToFill(const Output& output, const Rect& free) {
        SCOPED_TRACE(output.name);
        const Application window = Application::probe(
            desktop, "borderless", "window", {.x = output.area.x + 90, .y = 90, .width = 300, .height = 200});
        const std::string line = press("AC04", "fillDisplay");
        const Outcome outcome = Outcome::in(line).value_or(Outcome{});
        EXPECT_EQ(outcome.target, free);
        EXPECT_TRUE(takes(window, free));
        EXPECT_TRUE(outcome.accepted) << line;
    }

    // Where the manager lets a maximized window end.
    Rect maximizedOn(const Output& output) {
        const Rect& display = output.area;
        const Application ruler =
            Application::probe(desktop, "borderless", "ruler",
                               {.x = display.x + 60, .y = display.y + 60, .width = 300, .height = 200});
        desktop.x().maximize(ruler.window());
        require("a maximized window", [&] { return ruler.frame().width == display.width; });
        return ruler.frame();
    }

    // The display down to what is seen in the middle of its lower edge.
    Rect abovePanel(const Output& output) {
        const Rect& display = output.area;
        const auto panelFrame = desktop.x().outermostAt({.x = display.center().x, .y = display.maxY() - 1});
        require("a panel", [&] { return panelFrame.has_value(); });
        return {.x = display.x, .y = display.y, .width = display.width, .height = panelFrame->y - display.y};
    }
};

class LShapedWorkAreaTest : public WorkAreaTest {
protected:
    LShapedWorkAreaTest()
        : WorkAreaTest("icewm") {}
};

class LevelWorkAreaTest : public WorkAreaTest, public ::testing::WithParamInterface<std::string> {
protected:
    LevelWorkAreaTest()
        : WorkAreaTest(GetParam(), level) {}
};

// The manager has no panel of its own: what it declares is the test's.
class DeclaredWorkAreaTest : public WorkAreaTest {
protected:
    DeclaredWorkAreaTest()
        : WorkAreaTest("openbox", level) {}

    void declare(const std::string& property, const std::vector<std::uint32_t>& areas) {
        desktop.x().setProperty(desktop.x().root(), property, XCB_ATOM_CARDINAL, areas);
        desktop.x().flush();
    }
};

TEST_F(LShapedWorkAreaTest, everyZoneEndsWhereAMaximizedWindowWould) {
    startKarto();
    for (const Output& output : studioAndTower) {
        const Rect free = maximizedOn(output);
        EXPECT_LT(free.height, output.area.height);
        expectToFill(output, free);
    }
    const Application window = Application::probe(desktop, "plain", "decorated", somewhere);
    for (const std::string key : {"AE03", "AE04"}) {
        const std::string line = press(key, "moveToZone(" + key.substr(3) + ")");
        EXPECT_TRUE(Outcome::in(line).value_or(Outcome{}).accepted) << line;
        EXPECT_TRUE(takes(window, Outcome::in(line).value_or(Outcome{}).target));
    }
}

TEST_F(LShapedWorkAreaTest, aPanelThatGoesAndComesIsFollowed) {
    startKarto();
    const Rect free = maximizedOn(studioAndTower[0]);
    expectToFill(studioAndTower[0], free);
    desktop.killWindowManager();
    desktop.startWindowManager("openbox");
    {
        const Application window = Application::probe(desktop, "borderless", "window", somewhere);
        EXPECT_TRUE(pressUntilFits("AC04", window, zone::studio));
    }
    desktop.killWindowManager();
    desktop.startWindowManager("icewm");
    const Application window = Application::probe(desktop, "borderless", "window", somewhere);
    EXPECT_TRUE(pressUntilFits("AC04", window, free));
}

TEST_F(DeclaredWorkAreaTest, aWorkAreaThatChangesAloneMovesTheZones) {
    startKarto();
    const Application window = Application::probe(desktop, "borderless", "window", somewhere);
    const auto fillsDownTo = [&](double bottom) {
        Rect free = level[0].area;
        free.height = bottom;
        return pressUntilFits("AC04", window, free);
    };
    EXPECT_TRUE(fillsDownTo(800));
    declare("_NET_WORKAREA", {0, 0, 1880, 760});
    EXPECT_TRUE(fillsDownTo(760));
    // No more than what the panel on the other display takes.
    declare("_NET_WORKAREA", {0, 0, 1880, 800 - panelHeight});
    EXPECT_TRUE(fillsDownTo(800));
    declare("_GTK_WORKAREAS_D0", {0, 0, 1280, 750, 1280, 0, 600, 800 - panelHeight});
    EXPECT_TRUE(fillsDownTo(750));
    declare("_GTK_WORKAREAS_D0", {});
    EXPECT_TRUE(fillsDownTo(800));
}

INSTANTIATE_TEST_SUITE_P(On, LevelWorkAreaTest, ::testing::Values("icewm", "blackbox"), managerName);

TEST_P(LevelWorkAreaTest, windowsEndAtTheManagersOwnPanelAndAtAnother) {
    startKarto();
    for (const Output& output : level) {
        expectToFill(output, abovePanel(output));
    }
}

} // namespace karto::desktop
