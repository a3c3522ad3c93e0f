#include "KartoCore/LayoutTreeEditing.h"

#include "Support/Trees.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <limits>
#include <map>

namespace karto {

namespace {

using namespace LayoutTreeEditing;
using enum Branch;
using testing::columns, testing::rows, testing::zone;

std::vector<TreeZone> zonesOf(const LayoutNode& tree) { return tree.zones(NormRect::full()); }

NodePath anyZoneOf(const LayoutNode& tree) { return (*rc::gen::elementOf(zonesOf(tree))).path; }

// The zones that are not below the node.
std::vector<TreeZone> zonesBeside(const NodePath& node, const LayoutNode& tree) {
    std::vector<TreeZone> zones = zonesOf(tree);
    std::erase_if(zones, [&](const TreeZone& each) {
        return std::ranges::mismatch(node.branches, each.path.branches).in1 == node.branches.end();
    });
    return zones;
}

std::vector<std::int64_t> pinsOf(const std::vector<TreeZone>& zones) {
    std::vector<std::int64_t> pins;
    for (const TreeZone& each : zones) {
        pins.insert(pins.end(), each.leaf.pinnedOrder ? 1 : 0, each.leaf.pinnedOrder.value_or(0));
    }
    return pins;
}

Axis anyAxis() { return *rc::gen::element(Axis::vertical, Axis::horizontal); }

LayoutNode editedAnyhow(const NodePath& path, const LayoutNode& tree) {
    switch (*rc::gen::inRange(0, 3)) {
    case 0: return split(path, anyAxis(), tree);
    case 1: return moveBoundary(path.parent().value_or(path), *rc::gen::inRange(1, 8) / 8.0, tree);
    default: return removeZone(path, tree).value_or(tree);
    }
}

RC_GTEST_PROP(LayoutTreeEditing, anyEditsKeepTheDisplayTiledTheOldTreeAndAllOtherPins, ()) {
    LayoutNode tree = *testing::trees();
    for (int left = *rc::gen::inRange(1, 8); left > 0; --left) {
        std::vector<TreeZone> before = zonesOf(tree);
        const NodePath path = anyZoneOf(tree);
        const LayoutNode result = editedAnyhow(path, tree);
        const std::vector<TreeZone> after = zonesOf(result);
        RC_ASSERT(zonesOf(tree) == before);
        RC_ASSERT(testing::tileTheDisplay(after));
        RC_ASSERT(testing::shareAllBeside(path.parent().value_or(path), tree, result));
        if (after.size() < before.size()) {
            std::erase_if(before, [&](const TreeZone& each) { return each.path == path; });
        }
        RC_ASSERT(pinsOf(after) == pinsOf(before));
        tree = result;
    }
}

RC_GTEST_PROP(LayoutTreeEditing, removingTheNewHalfUndoesASplit, ()) {
    const LayoutNode tree = *testing::trees();
    const NodePath path = anyZoneOf(tree);
    const LayoutNode halved = split(path, anyAxis(), tree);
    RC_ASSERT(halved != tree);
    RC_ASSERT(removeZone(path.appending(second), halved) == tree);
}

RC_GTEST_PROP(LayoutTreeEditing, removingAZoneGivesItsSpaceToTheSiblingAndToNobodyElse, ()) {
    const LayoutNode tree = rows(0.25, *testing::trees(), *testing::trees());
    const NodePath removed = anyZoneOf(tree);
    const NodePath parent = *removed.parent();
    const NodePath sibling = parent.appending(removed.branches.back() == first ? second : first);

    const LayoutNode result = *removeZone(removed, tree);

    RC_ASSERT(result.node(parent) == tree.node(sibling));
    RC_ASSERT(zonesBeside(parent, result) == zonesBeside(parent, tree));
}

TEST(LayoutTreeEditing, aSplitHalvesItsZoneAndTheFirstHalfKeepsThePin) {
    EXPECT_EQ(split({}, Axis::horizontal, zone(4)), rows(0.5, zone(4), zone()));
    EXPECT_EQ(split({{second}}, Axis::vertical, columns(0.25, zone(1), zone(2))),
              columns(0.25, zone(1), columns(0.5, zone(2), zone())));
}

TEST(LayoutTreeEditing, pathsThatEndWhereAnEditDoesNotApplyChangeNothing) {
    const LayoutNode tree = columns(0.25, zone(1), rows(0.5, zone(2), zone()));
    for (const NodePath& path : {NodePath{}, {{second}}, {{first, first}}, {{second, first, first}}}) {
        EXPECT_FALSE(canSplit(path, tree));
        EXPECT_EQ(split(path, Axis::vertical, tree).split(), tree.split());
        EXPECT_FALSE(canRemoveZone(path, tree));
        EXPECT_FALSE(removeZone(path, tree));
    }
    EXPECT_FALSE(canRemoveZone({}, zone()));
    EXPECT_EQ(moveBoundary({{second, first}}, 0.75, tree).split(), tree.split());
    EXPECT_EQ(moveBoundary({{first, first}}, 0.75, tree).split(), tree.split());
}

TEST(LayoutTreeEditing, aZoneUnderAsManySplitsAsATreeMayNestIsNotSplit) {
    LayoutNode tree;
    NodePath deepest;
    for (int splits = 0; splits < LayoutNode::maximumDepth; ++splits) {
        EXPECT_TRUE(canSplit(deepest, tree));
        tree = split(deepest, Axis::vertical, tree);
        deepest = deepest.appending(first);
    }
    EXPECT_FALSE(canSplit(deepest, tree));
    EXPECT_EQ(split(deepest, Axis::vertical, tree).split(), tree.split());
    EXPECT_TRUE(canSplit({{second}}, tree));
}

TEST(LayoutTreeEditing, aBoundaryStopsBeforeItsZonesVanish) {
    for (const auto& [to, stands] : std::map<double, double>{
             {-3, 0.01}, {0, 0.01}, {0.01, 0.01}, {0.5, 0.5}, {0.99, 0.99}, {1, 0.99}, {7, 0.99}}) {
        EXPECT_EQ(moveBoundary({{second}}, to, columns(0.3, zone(), rows(0.6, zone(), zone()))),
                  columns(0.3, zone(), rows(stands, zone(), zone())));
    }
    EXPECT_EQ(clampedPosition(std::numeric_limits<double>::quiet_NaN()), 0.01);
}

} // namespace

} // namespace karto
