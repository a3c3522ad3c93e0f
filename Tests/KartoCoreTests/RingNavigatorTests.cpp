#include "KartoCore/RingNavigator.h"

#include "KartoCore/TidyPlanner.h"
#include "KartoCore/WindowCycle.h"
#include "Support/Trees.h"

#include <gtest/gtest.h>

namespace karto {

namespace {

using enum RingDirection;
using testing::columns, testing::equalColumns, testing::zone;

// Four columns of 100 points, numbered 1, 2, 4, 5: number 3 is on a display that is not connected.
std::vector<ResolvedZone> ringWithAGap() {
    auto ring = testing::ringOf(equalColumns(4, zone()), {.x = 0, .y = 0, .width = 400, .height = 100});
    ring[2].order = 4;
    ring[3].order = 5;
    return ring;
}

TEST(RingNavigator, stepsFollowTheRingAndWrap) {
    const auto ring = ringWithAGap();
    for (std::size_t index = 0; index < ring.size(); ++index) {
        const Rect& following = ring[(index + 1) % ring.size()].rect;
        EXPECT_EQ(RingNavigator::destination(ring[index].rect, ring, next), following);
        EXPECT_EQ(RingNavigator::destination(following, ring, previous), ring[index].rect);
    }
    EXPECT_EQ(RingNavigator::destination(4, ring), ring[2].rect);
    EXPECT_FALSE(RingNavigator::destination(3, ring));
}

TEST(RingNavigator, aWindowInNoZoneComesToTheNearestOneFirst) {
    const auto ring = ringWithAGap();
    const Rect stray{.x = 230, .y = 50, .width = 100, .height = 100};
    for (const RingDirection direction : {next, previous}) {
        EXPECT_EQ(RingNavigator::destination(stray, ring, direction), ring[2].rect);
        EXPECT_FALSE(RingNavigator::destination(stray, {}, direction));
    }
    const Rect between{.x = 150, .y = 500, .width = 100, .height = 10};
    EXPECT_EQ(RingNavigator::nearestZoneIndex(between, ring), 1);
    EXPECT_FALSE(RingNavigator::snapDestination(between, ring));
}

TEST(RingNavigator, aWindowOverTwoEqualZonesIsInTheEarlier) {
    const auto ring = ringWithAGap();
    const Rect window{.x = 100, .y = 0, .width = 200, .height = 100};
    EXPECT_EQ(RingNavigator::currentZoneIndex(window, ring), 1);
    EXPECT_EQ(RingNavigator::snapDestination(window, ring), ring[1].rect);
}

TEST(WindowCycle, rowsFollowTheFocusedOneAndWrap) {
    EXPECT_FALSE(WindowCycle::first(1, 0));
    EXPECT_EQ(WindowCycle::first(3, std::nullopt), 0);
    EXPECT_EQ(WindowCycle::first(3, 0), 1);
    EXPECT_EQ(WindowCycle::first(3, 2), 0);
    EXPECT_EQ(WindowCycle::next(2, 3), 0);
    EXPECT_FALSE(WindowCycle::next(0, 0));
}

TEST(TidyPlanner, windowsAreDealtOutOverTheZones) {
    const auto ring = testing::ringOf(columns(0.5, zone(), zone()), testing::rectAt(0, 0, 200, 100));
    const Rect a = ring[0].rect;
    const Rect b = ring[1].rect;
    EXPECT_EQ(TidyPlanner::plan(5, ring), (std::vector{a, b, a, b, a}));
    EXPECT_TRUE(TidyPlanner::plan(0, ring).empty());
    EXPECT_TRUE(TidyPlanner::plan(5, {}).empty());
}

} // namespace

} // namespace karto
