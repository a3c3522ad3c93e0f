#include "KartoCore/LayoutTreeEditing.h"

#include <algorithm>
#include <utility>

namespace karto::LayoutTreeEditing {

namespace {

bool endsOnZone(const NodePath& path, const LayoutNode& root) {
    const std::optional<LayoutNode> reached = root.node(path);
    return reached && reached->zone() != nullptr;
}

} // namespace

double clampedPosition(double at) {
    // In this order, what is not a number becomes a position too.
    return std::min(1 - LayoutNode::minimumExtent, std::max(LayoutNode::minimumExtent, at));
}

bool canSplit(const NodePath& path, const LayoutNode& root) {
    return path.branches.size() < LayoutNode::maximumDepth && endsOnZone(path, root);
}

LayoutNode split(const NodePath& path, Axis axis, const LayoutNode& root) {
    const auto zone = canSplit(path, root) ? root.node(path) : std::nullopt;
    return zone ? root.replacing(path, Split{.axis = axis, .at = 0.5, .first = *zone, .second = {}}) : root;
}

bool canRemoveZone(const NodePath& path, const LayoutNode& root) {
    return !path.branches.empty() && endsOnZone(path, root);
}

std::optional<LayoutNode> removeZone(const NodePath& path, const LayoutNode& root) {
    const auto parent = path.parent();
    if (!parent || !canRemoveZone(path, root)) {
        return std::nullopt;
    }
    const Branch sibling = path.branches.back() == Branch::first ? Branch::second : Branch::first;
    const auto remaining = root.node(parent->appending(sibling));
    return remaining ? std::optional(root.replacing(*parent, *remaining)) : std::nullopt;
}

LayoutNode moveBoundary(const NodePath& path, double at, const LayoutNode& root) {
    const std::optional<LayoutNode> reached = root.node(path);
    if (!reached || reached->split() == nullptr) {
        return root;
    }
    Split moved = *reached->split();
    moved.at = clampedPosition(at);
    return root.replacing(path, std::move(moved));
}

} // namespace karto::LayoutTreeEditing
