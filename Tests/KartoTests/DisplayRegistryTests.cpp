#include "Karto/Adapters/DisplayRegistry.h"
#include "Support/MemoryDesktop.h"

#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;

constexpr Rect primary{0, 0, 1920, 1080};
constexpr Rect belowPanel{0, 0, 1920, 1055};
constexpr Rect above{0, 1080, 1920, 1080};

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
    EXPECT_THAT(up.displays(), ElementsAre(DisplayInfo{.name = "Main", .frame = {0, 25, 1920, 1055}},
                                           DisplayInfo{.name = "", .frame = {0, -1080, 1920, 1080}}));
    EXPECT_EQ(DisplayRegistry::flip(primary, primary), primary);
}

} // namespace karto::testing
