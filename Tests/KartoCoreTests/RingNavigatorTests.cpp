#include "KartoCore/RingNavigator.h"

#include "Support/Trees.h"

#include <gtest/gtest.h>

namespace karto {

namespace {

using enum RingDirection;
using testing::equalColumns, testing::zone;

// Four columns of 100 points, numbered 1, 2, 4, 5: number 3 is on a display that is not connected.
std::vector<ResolvedZone> ringWithAGap() {
    auto ring = testing::ringOf(equalColumns(4, zone()), {0, 0, 400, 100});
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
    const Rect stray{230, 50, 100, 100};
    for (const RingDirection direction : {next, previous}) {
        EXPECT_EQ(RingNavigator::destination(stray, ring, direction), ring[2].rect);
        EXPECT_FALSE(RingNavigator::destination(stray, {}, direction));
    }
    const Rect between{150, 500, 100, 10};
    EXPECT_EQ(RingNavigator::nearestZoneIndex(between, ring), 1);
    EXPECT_FALSE(RingNavigator::snapDestination(between, ring));
}

TEST(RingNavigator, aWindowOverTwoEqualZonesIsInTheEarlier) {
    const auto ring = ringWithAGap();
    const Rect window{100, 0, 200, 100};
    EXPECT_EQ(RingNavigator::currentZoneIndex(window, ring), 1);
    EXPECT_EQ(RingNavigator::snapDestination(window, ring), ring[1].rect);
}

} // namespace

} // namespace karto
