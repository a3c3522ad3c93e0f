#include "KartoCore/ZoneSets.h"

#include "Support/Trees.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>

namespace karto {

namespace {

using testing::columns, testing::equalColumns, testing::rectAt, testing::landscape, testing::rows,
    testing::zone;

constexpr Rect frame{1024, -512, 2048, 1024};

// Top left, bottom left, top right, bottom right.
std::vector<ResolvedZone> quarters() {
    return testing::ringOf(equalColumns(2, rows(0.5, zone(), zone())), frame);
}

double areaOf(const ZoneSet& set, std::span<const ResolvedZone> ring) {
    double area = 0;
    for (const std::size_t index : set) {
        area += ring[index].rect.area();
    }
    return area;
}

RC_GTEST_PROP(ZoneSets, aClosureFillsItsBoxAndIsItsOwnClosure, ()) {
    const auto ring = testing::ringOf(*testing::trees(), frame);
    const auto zones = rc::gen::inRange<std::size_t>(0, ring.size());
    const ZoneSet set{*zones, *zones, *zones};
    const ZoneSet closed = ZoneSets::closure(set, ring);
    RC_ASSERT(std::ranges::includes(closed, set));
    RC_ASSERT(areaOf(closed, ring) == ZoneSets::boundingBox(closed, ring).area());
    RC_ASSERT(ZoneSets::closure(closed, ring) == closed);
    RC_ASSERT(ZoneSets::state(ZoneSets::boundingBox(closed, ring), ring) == closed);
}

RC_GTEST_PROP(ZoneSets, expandingEndsAtTheWholeDisplayAndShrinkingRetracesIt, ()) {
    const auto ring = testing::ringOf(*testing::trees(), frame);
    const std::size_t origin = *rc::gen::inRange<std::size_t>(0, ring.size());
    ZoneSet set{origin};
    RC_ASSERT(!ZoneSets::shrunk(set, origin, ring));
    while (const auto larger = ZoneSets::expanded(set, ring)) {
        RC_ASSERT(std::ranges::includes(*larger, set));
        RC_ASSERT(ZoneSets::shrunk(*larger, origin, ring) == set);
        set = *larger;
    }
    RC_ASSERT(set.size() == ring.size());
}

TEST(ZoneSets, expandingPrefersTheSmallerStepThenHeightThenTheLowerNumber) {
    EXPECT_EQ(ZoneSets::expanded({0}, quarters()), (ZoneSet{0, 1}));
    // The same quarters with the right column numbered first.
    const LayoutNode pinned = columns(0.5, rows(0.5, zone(3), zone(4)), rows(0.5, zone(1), zone(2)));
    EXPECT_EQ(ZoneSets::expanded({2}, testing::ringOf(pinned, frame)), (ZoneSet{2, 3}));

    const auto thirds = testing::ringOf(equalColumns(3, zone()), frame);
    EXPECT_EQ(ZoneSets::expanded({1}, thirds), (ZoneSet{0, 1}));
    const LayoutNode uneven = columns(0.5, columns(0.75, zone(), zone()), columns(0.25, zone(), zone()));
    EXPECT_EQ(ZoneSets::expanded({1}, testing::ringOf(uneven, frame)), (ZoneSet{1, 2}));
    EXPECT_FALSE(ZoneSets::expanded({0, 1, 2, 3}, quarters()));
}

TEST(ZoneSets, shrinkingStartsFromTheOriginOrTheLowestNumber) {
    const auto ring = quarters();
    EXPECT_EQ(ZoneSets::shrunk({0, 1}, 1, ring), ZoneSet{1});
    EXPECT_EQ(ZoneSets::shrunk({0, 1}, std::nullopt, ring), ZoneSet{0});
    EXPECT_EQ(ZoneSets::shrunk({0, 1}, 3, ring), ZoneSet{0});
    // Expanding {0} leads to {0, 1}, which is no way back from the top row.
    EXPECT_EQ(ZoneSets::shrunk({0, 2}, 0, ring), ZoneSet{0});
    EXPECT_EQ(ZoneSets::shrunk({0, 1, 2, 3, 9}, 9, ring), (ZoneSet{0, 1}));
}

TEST(ZoneSets, aWindowOccupiesTheZonesThatItHalfCoversOrTheOneThatItCoversMost) {
    const auto ring = quarters();
    const auto state = [&](const Rect& part) {
        return ZoneSets::state({frame.x + part.x, frame.y + part.y, part.width, part.height}, ring);
    };
    EXPECT_EQ(state({0, 0, 1024, 1024}), (ZoneSet{0, 1}));
    EXPECT_EQ(state({0, 0, 1536, 512}), (ZoneSet{0, 2}));
    EXPECT_EQ(state({0, 0, 1535, 512}), ZoneSet{0});
    EXPECT_EQ(state({800, 400, 400, 200}), ZoneSet{0});
    EXPECT_FALSE(state({-500, 0, 500, 500}));
}

TEST(ZoneSets, setsStayOnOneDisplayAndIgnorePositionsOutsideTheRing) {
    const auto ring = quarters();
    EXPECT_EQ(ZoneSets::closure({0, 3, 9}, ring), (ZoneSet{0, 1, 2, 3}));
    for (const ZoneSet& nowhere : {ZoneSet{}, ZoneSet{8, 9}}) {
        EXPECT_EQ(ZoneSets::closure(nowhere, ring), nowhere);
        EXPECT_FALSE(ZoneSets::expanded(nowhere, ring));
        EXPECT_FALSE(ZoneSets::shrunk(nowhere, std::nullopt, ring));
    }
    EXPECT_TRUE(ZoneSets::boundingBox({9}, ring).isNull());
    EXPECT_FALSE(ZoneSets::rect({9}, ring));
    EXPECT_TRUE(ZoneSets::indicesOnDisplayOf(4, ring).empty());

    const std::vector layouts{landscape("B", columns(0.5, zone(), zone(4))),
                              landscape("A", columns(0.5, zone(1), zone()))};
    const std::vector<DisplayInfo> displays{{.name = "A", .frame = rectAt(0, 0, 200, 100)},
                                            {.name = "B", .frame = rectAt(200, 0, 200, 100)}};
    const auto both = testing::ringOf(layouts, displays);
    using Indices = std::vector<std::size_t>;
    EXPECT_EQ(ZoneSets::indicesOnDisplayOf(3, both), (Indices{1, 3}));
    EXPECT_EQ(ZoneSets::indicesOnDisplayHolding({100, 0, 200, 100}, both), (Indices{0, 2}));
    EXPECT_EQ(ZoneSets::indicesOnDisplayHolding({100.01, 0, 200, 100}, both), (Indices{1, 3}));
    EXPECT_EQ(ZoneSets::indicesOnDisplayHolding({100.001, 0, 200, 100}, both), (Indices{0, 2}));
    EXPECT_EQ(ZoneSets::closure({0, 1, 3}, both), ZoneSet{0});
    EXPECT_EQ(ZoneSets::expanded({0, 1}, both), (ZoneSet{0, 2}));
}

} // namespace

} // namespace karto
