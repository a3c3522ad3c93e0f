#include "KartoCore/ZoneEditing.h"

#include "Support/Trees.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <map>

namespace karto {

namespace {

using enum Branch;
using testing::columns, testing::rows, testing::zone;
using ::testing::ElementsAre, ::testing::IsEmpty;

constexpr auto pathOf = [](const auto& each) { return each.path; };
constexpr Size display{.width = 1000, .height = 500};
// Its lines stand at x 250, at y 200 right of that, and at x 500 below that.
const LayoutNode tree = columns(0.25, zone(), rows(0.4, zone(), columns(1.0 / 3, zone(), zone())));

TEST(ZoneEditing, boundariesAreListedOuterFirstWithTheirRegions) {
    const std::vector<EditBoundary> expected{
        {{}, Axis::vertical, NormRect::full(), 0.25},
        {{{second}}, Axis::horizontal, {0.25, 0, 0.75, 1}, 0.4},
        {{{second, second}}, Axis::vertical, {0.25, 0.4, 0.75, 0.6}, 1.0 / 3},
    };
    EXPECT_EQ(ZoneEditing::boundaries(tree, NormRect::full()), expected);
    EXPECT_EQ(expected[2].displayPosition(), 0.5);
    EXPECT_EQ(ZoneEditing::grabStrip(expected[1], display), (Rect{250, 195, 750, 10}));
    EXPECT_EQ(ZoneEditing::grabStrip(expected[2], display), (Rect{495, 200, 10, 300}));
}

RC_GTEST_PROP(ZoneEditing, pathsLeadBackToTheBoundariesAndZonesThatHaveThem, ()) {
    const LayoutNode root = *testing::trees();
    for (const EditBoundary& each : ZoneEditing::boundaries(root, NormRect::full())) {
        RC_ASSERT(ZoneEditing::boundary(each.path, root) == each);
        RC_ASSERT(!ZoneEditing::zone(each.path, root));
    }
    for (const TreeZone& each : root.zones(NormRect::full())) {
        RC_ASSERT(ZoneEditing::zone(each.path, root) == each);
        RC_ASSERT(!ZoneEditing::boundary(each.path, root));
        RC_ASSERT(!ZoneEditing::zone(each.path.appending(Branch::first), root));
    }
}

TEST(ZoneEditing, aPointerGrabsTheNearestLineWhoseStripHoldsIt) {
    const auto grabbed = [](Point point) {
        return ZoneEditing::boundary(point, tree, display).transform(pathOf);
    };
    const NodePath row{{second}};
    const NodePath inner{{second, second}};
    EXPECT_EQ(grabbed({246, 10}), NodePath{});
    EXPECT_EQ(grabbed({255, 10}), std::nullopt);
    EXPECT_EQ(grabbed({500, 195}), row);
    EXPECT_EQ(grabbed({495, 206}), inner);
    // The strips of two lines: the nearer one, and the outer one half way.
    EXPECT_EQ(grabbed({499, 202}), inner);
    EXPECT_EQ(grabbed({502, 201}), row);
    EXPECT_EQ(grabbed({502, 202}), row);
}

TEST(ZoneEditing, aPointOnASharedEdgeBelongsToTheZoneListedFirst) {
    const auto pathAt = [](Point point) { return ZoneEditing::zone(point, tree, display).transform(pathOf); };
    EXPECT_EQ(pathAt({250, 500}), NodePath{{first}});
    EXPECT_EQ(pathAt({251, 200}), (NodePath{{second, first}}));
    EXPECT_EQ(pathAt({500, 201}), (NodePath{{second, second, first}}));
    EXPECT_EQ(pathAt({1000, 500}), (NodePath{{second, second, second}}));
    EXPECT_FALSE(pathAt({1000.5, 300}));
}

RC_GTEST_PROP(ZoneEditing, aBoundaryFollowsThePointer, ()) {
    const LayoutNode edited = rows(0.25, *testing::trees(), *testing::trees());
    EditBoundary boundary = *rc::gen::elementOf(ZoneEditing::boundaries(edited, NormRect::full()));
    const Point pointer{*rc::gen::inRange(0, 1001) / 1., *rc::gen::inRange(0, 501) / 1.};
    boundary.at = ZoneEditing::position(pointer, boundary, display);
    const Point center = ZoneEditing::grabStrip(boundary, display).center();
    const bool isVertical = boundary.axis == Axis::vertical;
    RC_ASSERT(std::abs(isVertical ? center.x - pointer.x : center.y - pointer.y) < 1e-9);
}

TEST(ZoneEditing, aBoundaryWithoutExtentStaysWhereItIs) {
    EXPECT_EQ(ZoneEditing::position({700, 10}, {{}, Axis::vertical, {0.5, 0, 0, 1}, 0.3}, display), 0.3);
    EXPECT_EQ(ZoneEditing::position({700, 10}, {{}, Axis::vertical, NormRect::full(), 0.3}, {0, 0}), 0.3);
    const LayoutNode flat = columns(1, zone(), columns(0.5, zone(), zone()));
    EXPECT_THAT(Snapping::candidates({{second}}, flat, NormRect::full(), Axis::vertical), IsEmpty());
}

using Snapping::Candidate;

std::vector<Candidate> candidates(const NodePath& path, const LayoutNode& root) {
    return Snapping::candidates(path, root, NormRect::full(), Axis::vertical);
}

Candidate line(double position) { return {position, Snapping::CandidateOrigin::boundary}; }

Candidate fraction(double position) { return {position, Snapping::CandidateOrigin::fraction}; }

TEST(Snapping, boundariesComeBeforeFractionsAndEachPlaceOnce) {
    // The inner line stands at the display's middle, so that this fraction is a boundary already.
    EXPECT_THAT(candidates({}, tree),
                ElementsAre(line(0.5), fraction(0.25), fraction(1.0 / 3), fraction(2.0 / 3), fraction(0.75)));
    // From 0.25 to 1: the outer line is its left end, and hides the quarter.
    EXPECT_THAT(candidates({{second, second}}, tree),
                ElementsAre(line(0), fraction((1.0 / 3 - 0.25) / 0.75), fraction((0.5 - 0.25) / 0.75),
                            fraction((2.0 / 3 - 0.25) / 0.75), fraction((0.75 - 0.25) / 0.75)));
    EXPECT_THAT(candidates({{first}}, tree), ElementsAre(line(1)));
    EXPECT_THAT(candidates({{first, first}}, tree), IsEmpty());
}

TEST(Snapping, aPlaceIsTakenWithinABillionthOfTheFirstKept) {
    const double at = 0.4;
    const auto pair = [](double left, double right) {
        return rows(0.5, columns(left, zone(), zone()), columns(right, zone(), zone()));
    };
    const LayoutNode close = rows(0.5, pair(at, at + 0.6e-9), pair(at + 1.2e-9, at - 0.9e-9));
    const auto found = candidates({}, close);
    ASSERT_EQ(found.size(), 2 + 5);
    EXPECT_EQ(found[0], line(at));
    EXPECT_EQ(found[1], line(at + 1.2e-9));
}

TEST(Snapping, aDragSnapsToABoundaryWithinReachBeforeAnyFraction) {
    // The other line stands 20 points right of the quarter.
    const LayoutNode root = rows(0.5, columns(0.6, zone(), zone()), columns(0.27, zone(), zone()));
    const EditBoundary dragged = ZoneEditing::boundaries(root, NormRect::full())[1];
    const auto settled = [&](double to, Snapping::Mode snapping) {
        return ZoneEditing::settle(to, dragged, root, display, snapping);
    };
    using enum Snapping::Mode;
    for (const auto& [to, stands] : std::map<double, double>{
             {-0.2, 0.01}, {0.2375, 0.2375}, {0.239, 0.25}, {0.257, 0.25}, {0.259, 0.27}, {0.2825, 0.2825}}) {
        EXPECT_EQ(settled(to, on), stands) << to;
    }
    EXPECT_EQ(settled(0.259, off), 0.259);
    EXPECT_EQ(settled(1.2, off), 0.99);
    // Twelve points away is out of reach, and of two as near the earlier one is taken.
    const std::vector ends{line(0.25), line(0.75)};
    EXPECT_EQ(Snapping::resolve(0.5, ends, {.extentInPoints = 48, .thresholdInPoints = 12}), 0.5);
    EXPECT_EQ(Snapping::resolve(0.5, ends, {.extentInPoints = 40, .thresholdInPoints = 12}), 0.25);
}

TEST(ZoneEditing, theReadoutNamesTheLinesPlaceOnTheDisplay) {
    const auto reading = [](Axis axis, double at, const NormRect& region) {
        return ZoneEditing::readout({{}, axis, region, at}, {1920, 1080});
    };
    constexpr NormRect rightHalf{.x = 0.5, .y = 0, .w = 0.5, .h = 1};
    EXPECT_EQ(reading(Axis::vertical, 0.5, NormRect::full()), "50% · 960 pt");
    EXPECT_EQ(reading(Axis::horizontal, 0.25, NormRect::full()), "25% · 270 pt");
    EXPECT_EQ(reading(Axis::vertical, 0.25, rightHalf), "63% · 1200 pt");
    EXPECT_EQ(reading(Axis::horizontal, 0.01, rightHalf), "1% · 11 pt");
}

TEST(ZoneEditing, theReadoutStaysOnTheDisplayAboveThePointerOrTheLine) {
    const EditBoundary line{{}, Axis::vertical, NormRect::full(), 0.25};
    constexpr Size fullHD{.width = 1920, .height = 1080};
    EXPECT_EQ(ZoneEditing::readoutPoint(Point{10, 10}, line, fullHD), (Point{90, 24}));
    EXPECT_EQ(ZoneEditing::readoutPoint(Point{1915, 1079}, line, fullHD), (Point{1830, 1045}));
    EXPECT_EQ(ZoneEditing::readoutPoint(Point{700, 1200}, line, fullHD), (Point{700, 1056}));
    EXPECT_EQ(ZoneEditing::readoutPoint(std::nullopt, line, fullHD), (Point{480, 506}));
    EXPECT_EQ(ZoneEditing::readoutPoint(Point{10, 10}, line, {100, 40}), (Point{10, 16}));
}

TEST(ZoneEditing, buttonsNeedTheirMarginWithinTheZone) {
    EXPECT_TRUE(ZoneEditing::fitsButtons({0, 0, 0.12, 0.096}, display));
    EXPECT_FALSE(ZoneEditing::fitsButtons({0, 0, 0.119, 1}, display));
    EXPECT_FALSE(ZoneEditing::fitsButtons({0, 0, 1, 0.094}, display));
}

} // namespace

} // namespace karto
