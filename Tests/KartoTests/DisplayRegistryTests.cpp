#include "Karto/Adapters/DisplayRegistry.h"
#include "Support/MemoryDesktop.h"

#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;

constexpr Rect primary{.x = 0, .y = 0, .width = 1920, .height = 1080};
constexpr Rect belowPanel{.x = 0, .y = 0, .width = 1920, .height = 1055};
constexpr Rect above{.x = 0, .y = 1080, .width = 1920, .height = 1080};

} // namespace

TEST(DisplayRegistry, framesEndUpGrowingDownwardFromThePrimaryScreen) {
    MemoryDesktop desktop;
    desktop.connected = {{.name = "Main", .frame = primary, .visibleFrame = belowPanel},
                         {.name = "", .frame = above, .visibleFrame = above}};
    DisplayRegistry down(desktop);
    EXPECT_THAT(down.displays(), ElementsAre(DisplayInfo{.name = "Main", .frame = belowPanel},
                                             DisplayInfo{.name = "", .frame = above}));

    desktop.axis = VerticalAxis::up;
    DisplayRegistry up(desktop);
    EXPECT_THAT(
        up.displays(),
        ElementsAre(DisplayInfo{.name = "Main", .frame = {.x = 0, .y = 25, .width = 1920, .height = 1055}},
                    DisplayInfo{.name = "", .frame = {.x = 0, .y = -1080, .width = 1920, .height = 1080}}));
    EXPECT_EQ(DisplayRegistry::flip(primary, primary), primary);
}

TEST(DisplayRegistry, readsTheScreensOnceAfterEveryChange) {
    MemoryDesktop desktop;
    DisplayRegistry registry(desktop);
    EXPECT_TRUE(registry.displays().empty());
    const Screen screen{.name = "Main", .frame = primary, .visibleFrame = belowPanel};
    desktop.connected = {screen};
    EXPECT_TRUE(registry.displays().empty());
    desktop.connect({screen, screen});
    EXPECT_EQ(registry.displays().size(), 2U);
}

} // namespace karto::testing
