#include "Karto/Adapters/WindowService.h"
#include "Support/MemoryDesktop.h"

#include <gmock/gmock.h>

#include <array>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;

constexpr Rect left{0, 0, 1000, 800};
constexpr Rect right{1000, 0, 2000, 1600};
constexpr std::array displays{left, right};
constexpr Rect onLeft{100, 100, 300, 200};
constexpr Rect onRight{1100, 100, 300, 200};

class WindowServiceTest : public ::testing::Test {
protected:
    WindowServiceTest() { desktop.connected = {screen("L", left), screen("R", right)}; }

    std::vector<WindowHandle> listed(std::size_t display) {
        std::vector<WindowHandle> handles;
        for (const auto& window : service.windows(display, displays)) {
            handles.push_back(window.element);
        }
        return handles;
    }

    MemoryDesktop desktop;
    WindowService service{desktop};
    std::int32_t editor = desktop.launch("Editor");
    std::int32_t mail = desktop.launch("Mail");
};

} // namespace

TEST_F(WindowServiceTest, focusFallsBackOnTheFirstWindowOfTheFrontmostApplication) {
    EXPECT_EQ(service.focusedWindow(), std::nullopt);
    desktop.frontmost = editor;
    EXPECT_EQ(service.focusedWindow(), std::nullopt);
    const auto first = desktop.open(editor, {.frame = onLeft});
    const auto second = desktop.open(editor, {.frame = onLeft});
    EXPECT_EQ(service.focusedWindow(), first);
    desktop.application(editor).focusedWindow = second;
    EXPECT_EQ(service.focusedWindow(), second);
    desktop.application(editor).focusedWindow.reset();
    desktop.application(editor).areWindowsReadable = false;
    EXPECT_EQ(service.focusedWindow(), std::nullopt);
}

TEST_F(WindowServiceTest, listsOnlyOrdinaryWindowsOfRegularApplicationsOnTheDisplay) {
    const auto ordinary = desktop.open(editor, {.frame = onLeft});
    const auto unknownState =
        desktop.open(editor, {.frame = onLeft, .isMinimized = std::nullopt, .isFullscreen = std::nullopt});
    const Rect astride{900, 0, 200, 200};
    const auto straddling = desktop.open(editor, {.frame = astride});
    const Rect mostlyRight{990, 0, 200, 200};
    for (const MemoryWindow& skipped :
         {MemoryWindow{.frame = onLeft, .isStandard = false},
          MemoryWindow{.frame = onLeft, .isStandard = std::nullopt},
          MemoryWindow{.frame = onLeft, .isMinimized = true},
          MemoryWindow{.frame = onLeft, .isFullscreen = true},
          MemoryWindow{.frame = onLeft, .isPositionReadable = false},
          MemoryWindow{.frame = onLeft, .isSizeReadable = false}, MemoryWindow{.frame = mostlyRight},
          MemoryWindow{.frame = {-500, -500, 100, 100}}}) {
        desktop.open(editor, skipped);
    }
    const auto agent = desktop.launch("Agent");
    desktop.application(agent).application.isRegular = false;
    desktop.open(agent, {.frame = onLeft});
    desktop.open(mail, {.frame = onLeft});
    desktop.application(mail).areWindowsReadable = false;

    EXPECT_THAT(listed(0), ElementsAre(ordinary, unknownState, straddling));
}

TEST_F(WindowServiceTest, raisingBringsTheWindowAndItsApplicationToTheFront) {
    const auto inEditor = desktop.open(editor, {.frame = onRight});
    const auto topmost = desktop.open(mail, {.frame = onRight});
    const auto below = desktop.open(mail, {.frame = onRight});
    ASSERT_THAT(listed(1), ElementsAre(inEditor, topmost, below));
    service.raise(service.windows(1, displays).back());
    EXPECT_EQ(service.focusedWindow(), below);
    EXPECT_THAT(listed(1), ElementsAre(below, topmost, inEditor));
}

TEST_F(WindowServiceTest, aWindowKeptOnItsScreenArrivesWholeOnAnother) {
    const auto window = desktop.open(editor, {.frame = onLeft, .staysOnScreen = true});
    const Rect larger{2000, 0, 1000, 1600};
    service.setFrame(larger, window);
    EXPECT_EQ(service.frame(window), larger);
    const Rect smaller{500, 0, 500, 800};
    service.setFrame(smaller, window);
    EXPECT_EQ(service.frame(window), smaller);
}

TEST_F(WindowServiceTest, aWindowThatCannotTakeTheWholeFrameIsLeftAlone) {
    for (const MemoryWindow& fixed : {MemoryWindow{.frame = onLeft, .isPositionSettable = false},
                                      MemoryWindow{.frame = onLeft, .isSizeSettable = false}}) {
        const auto window = desktop.open(editor, fixed);
        service.setFrame(onRight, window);
        EXPECT_EQ(service.frame(window), onLeft);
    }
}

} // namespace karto::testing
