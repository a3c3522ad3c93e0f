#include "Karto/Platform/X11/Windows/Icons.h"
#include "Karto/Platform/X11/Windows/WindowPlacer.h"

#include <gtest/gtest.h>

#include <vector>

namespace karto::x11 {
namespace {

WindowFacts facts(Insets decoration, Insets shadow) {
    WindowFacts result;
    result.decoration = decoration;
    result.shadow = shadow;
    return result;
}

TEST(WindowGeometry, theVisibleFrameFillsTheFrameAskedFor) {
    constexpr Insets titleBar{.left = 1, .right = 2, .top = 24, .bottom = 3};
    constexpr Insets ownShadow{.left = 26, .right = 26, .top = 23, .bottom = 29};
    constexpr Rect target{100, 50, 640, 480};
    for (auto window :
         {facts(titleBar, {}), facts({}, ownShadow), facts(titleBar, ownShadow), facts({}, {})}) {
        const auto area = clientAreaFor(target, window);
        window.x = area.x;
        window.y = area.y;
        window.width = area.width;
        window.height = area.height;
        EXPECT_EQ(window.visibleFrame(), target);
    }
}

TEST(WindowGeometry, windowsInAdjacentZonesMeetOnOnePixel) {
    constexpr double width = 1366;
    const auto window = facts({}, {});
    for (int columns = 1; columns < 40; ++columns) {
        int edge = 0;
        for (int i = 0; i < columns; ++i) {
            const auto area = clientAreaFor({width * i / columns, 0, width / columns, 100}, window);
            EXPECT_EQ(area.x, edge);
            edge = area.x + area.width;
        }
        EXPECT_EQ(edge, 1366);
    }
}

TEST(WindowGeometry, noFrameIsTooSmallForAWindow) {
    const auto area =
        clientAreaFor({0, 0, 10, 10}, facts({.left = 8, .right = 8, .top = 30, .bottom = 8}, {}));
    EXPECT_EQ(area.width, 1);
    EXPECT_EQ(area.height, 1);
}

TEST(WindowGeometry, sizeHintsBoundTheSize) {
    struct Case {
        xcb_size_hints_t hints;
        int width;
    };

    constexpr std::uint32_t minimum = XCB_ICCCM_SIZE_HINT_P_MIN_SIZE;
    constexpr std::uint32_t maximum = XCB_ICCCM_SIZE_HINT_P_MAX_SIZE;
    constexpr std::uint32_t steps = XCB_ICCCM_SIZE_HINT_P_RESIZE_INC;
    constexpr std::uint32_t base = XCB_ICCCM_SIZE_HINT_BASE_SIZE;
    const auto hints = [](std::uint32_t flags, int min, int max, int inc, int baseWidth) {
        xcb_size_hints_t result{};
        result.flags = flags;
        result.min_width = min;
        result.max_width = max;
        result.width_inc = inc;
        result.base_width = baseWidth;
        return result;
    };
    for (const auto& [hint, width] : std::vector<Case>{
             {hints(0, 900, 10, 7, 3), 500},
             {hints(minimum, 600, 0, 0, 0), 600},
             {hints(maximum, 0, 400, 0, 0), 400},
             {hints(maximum, 0, 0, 0, 0), 500},
             {hints(steps | base, 0, 0, 6, 4), 496},
             {hints(steps | base, 0, 0, 7, 4), 494},
             {hints(steps | minimum, 10, 0, 7, 0), 500},
             {hints(steps, 0, 0, 0, 0), 500},
         }) {
        EXPECT_EQ(constrained({0, 0, 500, 500}, hint).width, width);
    }
}

TEST(WindowIcons, theSmallestIconThatIsLargeEnoughWins) {
    const auto property = [](const std::vector<std::uint32_t>& sizes) {
        std::vector<std::uint32_t> words;
        for (const auto size : sizes) {
            words.insert(words.end(), {size, size});
            words.insert(words.end(), static_cast<std::size_t>(size) * size, size);
        }
        return words;
    };
    const auto width = [](const std::optional<Image>& image) { return image ? image->width : 0; };
    EXPECT_EQ(width(bestIcon(property({16, 128, 64, 32}))), 64);
    EXPECT_EQ(width(bestIcon(property({16, 48, 32}))), 48);
    EXPECT_EQ(width(bestIcon({})), 0);
    auto cut = property({16, 64});
    cut.pop_back();
    EXPECT_EQ(width(bestIcon(cut)), 16);
    const std::vector<std::uint32_t> absurd{0xFFFFFFFF, 0xFFFFFFFF, 1};
    EXPECT_EQ(width(bestIcon(absurd)), 0);
}

} // namespace
} // namespace karto::x11
