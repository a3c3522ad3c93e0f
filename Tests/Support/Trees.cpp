#include "Support/Trees.h"

#include "KartoCore/Config.h"
#include "KartoCore/Membership.h"

#include <utility>

namespace karto {

std::ostream& operator<<(std::ostream& out, const LayoutNode& node) {
    if (const ZoneLeaf* leaf = node.zone()) {
        out << ".";
        return leaf->pinnedOrder ? out << *leaf->pinnedOrder : out;
    }
    const auto& [axis, at, first, second] = *node.split();
    return out << "(" << at << " " << first << (axis == Axis::vertical ? " | " : " / ") << second << ")";
}

} // namespace karto

namespace karto::testing {

namespace {

LayoutNode anyTree(int depth) {
    if (depth == 0 || *rc::gen::inRange(0, 4) == 0) {
        return *rc::gen::arbitrary<bool>() ? zone(*rc::gen::inRange<std::int64_t>(-2, 10)) : zone();
    }
    const double at = *rc::gen::inRange(1, 8) / 8.0;
    return Split{.axis = *rc::gen::element(Axis::vertical, Axis::horizontal),
                 .at = at,
                 .first = anyTree(depth - 1),
                 .second = anyTree(depth - 1)};
}

} // namespace

LayoutNode zone(std::optional<std::int64_t> pinnedOrder) { return ZoneLeaf{.pinnedOrder = pinnedOrder}; }

LayoutNode columns(double at, LayoutNode left, LayoutNode right) {
    return Split{.axis = Axis::vertical, .at = at, .first = std::move(left), .second = std::move(right)};
}

LayoutNode rows(double at, LayoutNode top, LayoutNode bottom) {
    return Split{.axis = Axis::horizontal, .at = at, .first = std::move(top), .second = std::move(bottom)};
}

LayoutNode equalColumns(int count, const LayoutNode& part) {
    return count == 1 ? part : columns(1.0 / count, part, equalColumns(count - 1, part));
}

DisplayLayout landscape(std::string name, LayoutNode root) {
    return {.name = std::move(name), .orientation = Orientation::landscape, .root = std::move(root)};
}

DisplayLayout portrait(std::string name, LayoutNode root) {
    return {.name = std::move(name), .orientation = Orientation::portrait, .root = std::move(root)};
}

bool tileTheDisplay(std::span<const TreeZone> zones) {
    double area = 0;
    std::vector<Rect> rects;
    for (const TreeZone& zone : zones) {
        const Rect rect = zone.rect.pixelRect(rectAt(0, 0, 1, 1));
        if (Membership::holder(rect, rects)) {
            return false;
        }
        area += rect.area();
        rects.push_back(rect);
    }
    return area == 1;
}

bool shareAllBeside(const NodePath& path, const LayoutNode& one, const LayoutNode& other) {
    for (auto above = path.parent(); above; above = above->parent()) {
        const Branch taken = path.branches[above->branches.size()];
        const NodePath beside = above->appending(taken == Branch::first ? Branch::second : Branch::first);
        if (one.node(beside).transform(&LayoutNode::split) !=
            other.node(beside).transform(&LayoutNode::split)) {
            return false;
        }
    }
    return true;
}

std::vector<ResolvedZone> ringOf(std::span<const DisplayLayout> layouts,
                                 std::span<const DisplayInfo> displays) {
    KartoConfig config;
    config.displays.assign(layouts.begin(), layouts.end());
    return ZoneResolver::resolve(config, displays);
}

std::vector<ResolvedZone> ringOf(const LayoutNode& root, const Rect& frame) {
    return ringOf(std::vector{landscape("A", root)}, std::vector{DisplayInfo{.name = "A", .frame = frame}});
}

rc::Gen<LayoutNode> trees() {
    constexpr int deepest = 5;
    return rc::gen::exec([] { return anyTree(deepest); });
}

rc::Gen<std::vector<DisplayLayout>> layouts() {
    const auto layout = rc::gen::exec([] {
        return DisplayLayout{.name = *rc::gen::element<std::string>("A", "B"),
                             .orientation = *rc::gen::element(Orientation::landscape, Orientation::portrait),
                             .root = *trees()};
    });
    return rc::gen::mapcat(rc::gen::inRange<std::size_t>(0, 5), [layout](std::size_t count) {
        return rc::gen::container<std::vector<DisplayLayout>>(count, layout);
    });
}

} // namespace karto::testing
