#include "KartoCore/TreeOrdering.h"

#include "Support/Trees.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <ranges>

namespace karto {

namespace {

using enum Branch;
using testing::columns, testing::landscape, testing::portrait, testing::rows, testing::zone;

std::vector<int> ordersOf(std::span<const DisplayLayout> layouts) {
    std::vector<int> orders;
    for (const RingEntry& entry : TreeOrdering::ringOrder(layouts)) {
        orders.push_back(entry.order);
    }
    return orders;
}

RC_GTEST_PROP(TreeOrdering, theRingIsAPermutationInWhichTheFirstClaimantKeepsItsNumber, ()) {
    const std::vector<DisplayLayout> layouts = *testing::layouts();
    const std::vector<RingEntry> ring = TreeOrdering::ringOrder(layouts);
    const int size = TreeOrdering::ringSize(layouts);

    std::vector<int> orders = ordersOf(layouts);
    std::ranges::sort(orders);
    RC_ASSERT(std::ranges::equal(orders, std::views::iota(1, size + 1)));

    std::map<int, int> claims;
    int lastFree = 0;
    for (const RingEntry& entry : ring) {
        const auto pinned = entry.zone.leaf.pinnedOrder;
        const int claim = pinned ? TreeOrdering::claimedOrder(*pinned, size) : 0;
        if (pinned && claims.try_emplace(claim, entry.order).second) {
            RC_ASSERT(entry.order == claim);
        } else {
            RC_ASSERT(entry.order > lastFree);
            lastFree = entry.order;
        }
    }
}

TEST(TreeOrdering, zonesAreNumberedLayoutByLayoutAroundThePins) {
    const auto three = [](std::optional<std::int64_t> pin) {
        return columns(0.5, zone(), columns(0.5, zone(pin), zone()));
    };
    const std::vector mixed{landscape("A", three({})), portrait("B", rows(0.5, zone(), zone()))};
    EXPECT_EQ(TreeOrdering::order({{second}}, "B", Orientation::portrait, mixed), 4);
    EXPECT_EQ(TreeOrdering::path(5, "B", Orientation::portrait, mixed), (NodePath{{first}}));
    EXPECT_FALSE(TreeOrdering::path(5, "B", Orientation::landscape, mixed));

    using Orders = std::vector<int>;
    EXPECT_EQ(ordersOf(std::vector{landscape("A", three(-2))}), (Orders{2, 1, 3}));
    EXPECT_EQ(ordersOf(std::vector{landscape("A", three(99))}), (Orders{1, 3, 2}));
    EXPECT_EQ(ordersOf(std::vector{landscape("A", columns(0.5, zone(2), zone(2))), landscape("B", zone())}),
              (Orders{2, 1, 3}));
    EXPECT_EQ(ordersOf({}), Orders{});
}

} // namespace

} // namespace karto
