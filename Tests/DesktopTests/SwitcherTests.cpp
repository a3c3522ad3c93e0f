#include "DesktopTest.h"

#include <fmt/format.h>

#include <list>

namespace karto::desktop {

namespace {

constexpr double panelWidth = 420;

class SwitcherTest : public DesktopTest {
protected:
    explicit SwitcherTest(const std::string& manager = "openbox",
                          const std::vector<Output>& outputs = studioAndTower)
        : DesktopTest(manager, outputs) {
        keys.hyper = {"LWIN", "LCTL", "LALT"};
        configure("at = 0.5");
    }

    // Studio has two columns.
    void configure(const std::string& at) {
        KartoProcess::writeConfiguration(desktop, fmt::format(R"([profile]
name = "{}"
[[display]]
name = "Studio"
orientation = "landscape"
split = {{ axis = "vertical", {}, first = {{}}, second = {{}} }}
[hotkeys]
modifiers = ["control", "option", "command"]
[overlay]
delay = 2.0
)",
                                                              at, at));
    }

    // The last one is the active one.
    void open(int count, const Rect& area) {
        while (count-- > 0) {
            windows.push_back(
                Application::probe(desktop, "plain", fmt::format("window-{}", windows.size() + 1), area));
        }
    }

    [[nodiscard]] std::optional<Rect> panelFrame() const {
        for (const Rect& frame : desktop.x().unmanagedFrames("karto")) {
            if (frame.width == panelWidth) {
                return frame;
            }
        }
        return std::nullopt;
    }

    testing::AssertionResult showsPanel(const std::optional<Rect>& frame) {
        if (eventually([&] { return panelFrame() == frame; })) {
            return testing::AssertionSuccess();
        }
        const Rect is = panelFrame().value_or(Rect::null());
        return testing::AssertionFailure()
               << fmt::format("the panel is at ({}, {}, {}, {})", is.x, is.y, is.width, is.height);
    }

    testing::AssertionResult activates(const Application& window) {
        const bool isActive = eventually([&] { return desktop.x().activeWindow() == window.window(); });
        return isActive ? testing::AssertionSuccess()
                        : testing::AssertionFailure() << window.name() << " is not the active window";
    }

    // The panel over zone 1.
    static Rect panelOf(int rows) {
        const double height = 34 * rows + 16;
        return {.x = 110, .y = 400 - height / 2, .width = panelWidth, .height = height};
    }

    std::vector<Application> windows;
};

class SwitcherManagerTest : public SwitcherTest, public testing::WithParamInterface<std::string> {
protected:
    SwitcherManagerTest()
        : SwitcherTest(GetParam()) {}
};

} // namespace

TEST_P(SwitcherManagerTest, releasingRaisesTheWindowThatWasSelected) {
    startKarto();
    open(3, somewhere);
    keys.holdHyper();
    keys.tap("TAB");
    EXPECT_TRUE(showsPanel(panelOf(3)));
    EXPECT_TRUE(karto->log().next("switcher: 3 window(s) in zone 1 on \"Studio\""));
    EXPECT_EQ(desktop.x().activeWindow(), windows[2].window());
    takePicture("three windows");
    keys.releaseHyper();
    EXPECT_TRUE(showsPanel({}));
    EXPECT_TRUE(karto->log().next("switcher: raised a window of "));
    // Each program has one window; the one in front is listed first, the others in the order of their start.
    EXPECT_TRUE(activates(windows[0]));

    keys.holdHyper();
    keys.tap("TAB");
    keys.tap("TAB");
    keys.releaseHyper();
    EXPECT_TRUE(activates(windows[2]));
}

INSTANTIATE_TEST_SUITE_P(Managers, SwitcherManagerTest, onEveryManager, managerName);

TEST_F(SwitcherTest, cancellingAndClosedWindowsRaiseNothing) {
    startKarto();
    open(2, somewhere);
    keys.holdHyper();
    keys.tap("TAB");
    EXPECT_TRUE(showsPanel(panelOf(2)));
    takePicture("two windows");
    keys.tap("ESC");
    EXPECT_TRUE(showsPanel({}));
    keys.releaseHyper();
    EXPECT_TRUE(karto->log().next("switcher: cancelled, nothing raised"));
    EXPECT_TRUE(activates(windows[1]));

    keys.holdHyper();
    keys.tap("TAB");
    EXPECT_TRUE(showsPanel(panelOf(2)));
    windows[0].process().signal(SIGKILL);
    require("the window to go", [&] { return windows[0].frame().isNull(); });
    keys.releaseHyper();
    EXPECT_TRUE(karto->log().next("switcher: the selected window did not answer, nothing raised"));
    keys.holdHyper();
    keys.tap("TAB");
    EXPECT_TRUE(karto->log().next("switcher: 1 window(s) in zone 1, nothing to cycle"));
    keys.releaseHyper();
}

TEST_F(SwitcherTest, anExtraModifierEndsTheGestureToo) {
    startKarto();
    open(2, somewhere);
    keys.holdHyper();
    keys.tap("TAB");
    EXPECT_TRUE(showsPanel(panelOf(2)));
    keys.press("LFSH");
    EXPECT_TRUE(showsPanel({}));
    EXPECT_TRUE(activates(windows[0]));
    keys.release("LFSH");
    keys.releaseHyper();
}

TEST_F(SwitcherTest, thePanelStaysOnItsDisplay) {
    startKarto();
    open(2, {.x = 20, .y = 60, .width = 60, .height = 60});

    struct Case {
        std::string at;
        double x = 0;
    };

    for (const auto& [at, x] : {Case{.at = "at = 0.1", .x = 0}, Case{.at = "at = 0.9", .x = 366}}) {
        configure(at);
        EXPECT_TRUE(karto->log().next("profile \"" + at + "\""));
        keys.holdHyper();
        keys.tap("TAB");
        EXPECT_TRUE(showsPanel(Rect{.x = x, .y = 358, .width = panelWidth, .height = 84}));
        takePicture(at);
        keys.releaseHyper();
        EXPECT_TRUE(showsPanel({}));
    }
    open(28, somewhere);
    const Rect full{.x = 366, .y = 1, .width = panelWidth, .height = 34 * 23 + 16};
    keys.holdHyper();
    keys.tap("TAB");
    EXPECT_TRUE(showsPanel(full));
    takePicture("thirty windows");
    for (int selected = 1; selected < 26; ++selected) {
        keys.tap("TAB");
    }
    EXPECT_TRUE(showsPanel(full));
    takePicture("the twenty-sixth of thirty windows");
    keys.releaseHyper();
    EXPECT_TRUE(activates(windows[25]));
}

class SlimDisplayTest : public SwitcherTest {
protected:
    SlimDisplayTest()
        : SwitcherTest("openbox",
                       {{.name = "Studio", .area = {.x = 0, .y = 0, .width = 400, .height = 320}},
                        {.name = "Other", .area = {.x = 1280, .y = 0, .width = 600, .height = 1024}}}) {}
};

TEST_F(SlimDisplayTest, aDisplayNarrowerThanThePanelHasItAtItsLeftEdge) {
    startKarto();
    open(2, {.x = 210, .y = 60, .width = 150, .height = 150});
    keys.holdHyper();
    keys.tap("TAB");
    EXPECT_TRUE(showsPanel(Rect{.x = 0, .y = 118, .width = panelWidth, .height = 84}));
    takePicture("slim");
    keys.releaseHyper();
}

} // namespace karto::desktop
