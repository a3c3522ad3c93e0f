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
    if (!canSplit(path, root)) {
        return root;
    }
    return root.replacing(path, Split{.axis = axis, .at = 0.5, .first = *root.node(path), .second = {}});
}

bool canRemoveZone(const NodePath& path, const LayoutNode& root) {
    return !path.branches.empty() && endsOnZone(path, root);
}

std::optional<LayoutNode> removeZone(const NodePath& path, const LayoutNode& root) {
    if (!canRemoveZone(path, root)) {
        return std::nullopt;
    }
    const NodePath parent = *path.parent();
    const Branch sibling = path.branches.back() == Branch::first ? Branch::second : Branch::first;
    return root.replacing(parent, *root.node(parent.appending(sibling)));
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
