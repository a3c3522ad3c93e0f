#include "Karto/Adapters/WindowService.h"
#include "Support/MemoryDesktop.h"

#include <gmock/gmock.h>

#include <array>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;

constexpr Rect left{.x = 0, .y = 0, .width = 1000, .height = 800};
constexpr Rect right{.x = 1000, .y = 0, .width = 2000, .height = 1600};
constexpr std::array displays{left, right};
constexpr Rect onLeft{.x = 100, .y = 100, .width = 300, .height = 200};
constexpr Rect onRight{.x = 1100, .y = 100, .width = 300, .height = 200};

class WindowServiceTest : public ::testing::Test {
protected:
    WindowServiceTest() {
        desktop_.connected = {{.name = "L", .frame = left, .visibleFrame = left},
                              {.name = "R", .frame = right, .visibleFrame = right}};
    }

    std::vector<WindowHandle> listed(std::size_t display) {
        std::vector<WindowHandle> handles;
        for (const auto& window : service_.windows(display, displays)) {
            handles.push_back(window.element);
        }
        return handles;
    }

    MemoryDesktop desktop_;
    WindowService service_{desktop_};
    std::int32_t editor_ = desktop_.launch("Editor");
    std::int32_t mail_ = desktop_.launch("Mail");
};

} // namespace

TEST_F(WindowServiceTest, focusFallsBackOnTheFirstWindowOfTheFrontmostApplication) {
    EXPECT_EQ(service_.focusedWindow(), std::nullopt);
    desktop_.frontmost = editor_;
    EXPECT_EQ(service_.focusedWindow(), std::nullopt);
    const auto first = desktop_.open(editor_, {.frame = onLeft});
    const auto second = desktop_.open(editor_, {.frame = onLeft});
    EXPECT_EQ(service_.focusedWindow(), first);
    desktop_.application(editor_).focusedWindow = second;
    EXPECT_EQ(service_.focusedWindow(), second);
    desktop_.application(editor_).focusedWindow.reset();
    desktop_.application(editor_).areWindowsReadable = false;
    EXPECT_EQ(service_.focusedWindow(), std::nullopt);
}

TEST_F(WindowServiceTest, listsOnlyOrdinaryWindowsOfRegularApplicationsOnTheDisplay) {
    const auto ordinary = desktop_.open(editor_, {.frame = onLeft});
    const auto unknownState =
        desktop_.open(editor_, {.frame = onLeft, .isMinimized = std::nullopt, .isFullscreen = std::nullopt});
    const Rect astride{.x = 900, .y = 0, .width = 200, .height = 200};
    const auto straddling = desktop_.open(editor_, {.frame = astride});
    const Rect mostlyRight{.x = 990, .y = 0, .width = 200, .height = 200};
    for (const MemoryWindow& skipped :
         {MemoryWindow{.frame = onLeft, .isStandard = false},
          MemoryWindow{.frame = onLeft, .isStandard = std::nullopt},
          MemoryWindow{.frame = onLeft, .isMinimized = true},
          MemoryWindow{.frame = onLeft, .isFullscreen = true},
          MemoryWindow{.frame = onLeft, .isPositionReadable = false},
          MemoryWindow{.frame = onLeft, .isSizeReadable = false}, MemoryWindow{.frame = mostlyRight},
          MemoryWindow{.frame = {.x = -500, .y = -500, .width = 100, .height = 100}}}) {
        desktop_.open(editor_, skipped);
    }
    const auto agent = desktop_.launch("Agent");
    desktop_.application(agent).application.isRegular = false;
    desktop_.open(agent, {.frame = onLeft});
    desktop_.open(mail_, {.frame = onLeft});
    desktop_.application(mail_).areWindowsReadable = false;

    EXPECT_THAT(listed(0), ElementsAre(ordinary, unknownState, straddling));
}

TEST_F(WindowServiceTest, listsTheFrontmostApplicationFirst) {
    const auto browser = desktop_.launch("Browser");
    const auto inEditor = desktop_.open(editor_, {.frame = onRight});
    const auto inMail = desktop_.open(mail_, {.frame = onRight});
    const auto inBrowser = desktop_.open(browser, {.frame = onRight});
    EXPECT_THAT(listed(1), ElementsAre(inEditor, inMail, inBrowser));
    desktop_.frontmost = browser;
    EXPECT_THAT(listed(1), ElementsAre(inBrowser, inEditor, inMail));
}

TEST_F(WindowServiceTest, snapshotsCarryWhatTheSwitcherShows) {
    const auto icon = std::make_shared<const Image>();
    desktop_.application(editor_).icon = icon;
    const auto anonymous = desktop_.launch(std::nullopt);
    const auto titled = desktop_.open(editor_, {.frame = onLeft, .title = "notes"});
    const auto untitled = desktop_.open(anonymous, {.frame = onLeft, .title = ""});
    EXPECT_THAT(service_.windows(0, displays), ElementsAre(WindowSnapshot{.element = titled,
                                                                          .frame = onLeft,
                                                                          .appName = "Editor",
                                                                          .title = "notes",
                                                                          .icon = icon,
                                                                          .pid = editor_},
                                                           WindowSnapshot{.element = untitled,
                                                                          .frame = onLeft,
                                                                          .appName = std::nullopt,
                                                                          .title = std::nullopt,
                                                                          .icon = nullptr,
                                                                          .pid = anonymous}));
}

TEST_F(WindowServiceTest, aWindowKeptOnItsScreenArrivesWholeOnAnother) {
    const auto window = desktop_.open(editor_, {.frame = onLeft, .staysOnScreen = true});
    const Rect larger{.x = 2000, .y = 0, .width = 1000, .height = 1600};
    service_.setFrame(larger, window);
    EXPECT_EQ(service_.frame(window), larger);
    const Rect smaller{.x = 500, .y = 0, .width = 500, .height = 800};
    service_.setFrame(smaller, window);
    EXPECT_EQ(service_.frame(window), smaller);
}

TEST_F(WindowServiceTest, aWindowThatCannotTakeTheWholeFrameIsLeftAlone) {
    for (const MemoryWindow& fixed : {MemoryWindow{.frame = onLeft, .isPositionSettable = false},
                                      MemoryWindow{.frame = onLeft, .isSizeSettable = false}}) {
        const auto window = desktop_.open(editor_, fixed);
        service_.setFrame(onRight, window);
        EXPECT_EQ(service_.frame(window), onLeft);
    }
}

TEST_F(WindowServiceTest, raisingBringsTheWindowAndItsApplicationToTheFront) {
    desktop_.focus(desktop_.open(editor_, {.frame = onLeft}));
    desktop_.open(mail_, {.frame = onLeft});
    const auto below = desktop_.open(mail_, {.frame = onLeft});
    const auto snapshot = service_.windows(0, displays).back();
    ASSERT_EQ(snapshot.element, below);
    service_.raise(snapshot);
    EXPECT_EQ(service_.focusedWindow(), below);
}

} // namespace karto::testing
