#include "KartoCore/LayoutTree.h"

#include "KartoCore/Membership.h"
#include "Support/Trees.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace karto {

namespace {

using enum Branch;
using testing::columns, testing::rows, testing::zone;

TEST(LayoutTree, zonesAreListedLeftBeforeRightAndTopBeforeBottom) {
    const LayoutNode tree = columns(0.5, zone(), rows(0.25, zone(7), zone()));
    const std::vector<TreeZone> expected{
        {.rect = {.x = 0, .y = 0, .w = 0.5, .h = 1}, .leaf = {}, .path = {{first}}},
        {.rect = {.x = 0.5, .y = 0, .w = 0.5, .h = 0.25}, .leaf = {7}, .path = {{second, first}}},
        {.rect = {.x = 0.5, .y = 0.25, .w = 0.5, .h = 0.75}, .leaf = {}, .path = {{second, second}}},
    };
    EXPECT_EQ(tree.zones(NormRect::full()), expected);
}

RC_GTEST_PROP(LayoutTree, zonesTileTheDisplay, ()) {
    RC_ASSERT(testing::tileTheDisplay((*testing::trees()).zones(NormRect::full())));
}

RC_GTEST_PROP(LayoutTree, anEditChangesItsLeafAloneAndSharesTheRest, ()) {
    const LayoutNode tree = *testing::trees();
    const std::vector<TreeZone> before = tree.zones(NormRect::full());
    const std::size_t edited = *rc::gen::inRange<std::size_t>(0, before.size());
    const NodePath path = before[edited].path;

    const LayoutNode result = tree.updateLeaf(path, [](ZoneLeaf& leaf) { leaf.pinnedOrder = 99; });

    RC_ASSERT(tree.zones(NormRect::full()) == before);
    std::vector<TreeZone> after = before;
    after[edited].leaf.pinnedOrder = 99;
    RC_ASSERT(result.zones(NormRect::full()) == after);
    RC_ASSERT(result != tree);
    RC_ASSERT(testing::shareAllBeside(path, tree, result));
}

TEST(Geometry, overlapsAreMeasuredAndTiesGoToTheEarlierCandidate) {
    const Rect square{0, 0, 10, 10};
    const Rect beside{10, 0, 10, 10};
    const Rect across{5, 0, 10, 10};
    EXPECT_EQ(iou(square, square), 1);
    EXPECT_EQ(iou(square, beside), 0);
    EXPECT_EQ(iou(square, Rect{5, 5, 0, 0}), 0);
    EXPECT_EQ(Membership::holder(across, std::vector{beside, square}), 0);
    EXPECT_EQ(Membership::holder(square, std::vector{beside, across, square}), 2);
    EXPECT_FALSE(Membership::holder(square, std::vector{beside}));
    EXPECT_EQ((NormRect{.x = 0.5, .y = 0.25, .w = 0.5, .h = 0.75}.pixelRect({100, 50, 1000, 800})),
              (Rect{600, 250, 500, 600}));
    EXPECT_EQ(orientationOf(square), Orientation::landscape);
}

} // namespace

} // namespace karto
