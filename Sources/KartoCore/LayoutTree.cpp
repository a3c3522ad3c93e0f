#include "KartoCore/LayoutTree.h"

#include <array>
#include <iterator>
#include <span>
#include <utility>

namespace karto {

namespace {

// Raw names, at the position of their case.
constexpr std::array<std::string_view, 2> axisNames{"vertical", "horizontal"};
constexpr std::array<std::string_view, 2> orientationNames{"landscape", "portrait"};
constexpr std::array<std::string_view, 2> branchNames{"first", "second"};

void listZones(const LayoutNode& node, const NormRect& region, NodePath& path, std::vector<TreeZone>& zones) {
    if (const ZoneLeaf* leaf = node.zone()) {
        zones.push_back({.rect = region, .leaf = *leaf, .path = path});
        return;
    }
    const Split& split = *node.split();
    for (const Branch branch : {Branch::first, Branch::second}) {
        path.branches.push_back(branch);
        listZones(split.child(branch), split.childRegion(branch, region), path, zones);
        path.branches.pop_back();
    }
}

// Precondition: all steps but the last lead to splits.
LayoutNode rebuilt(const LayoutNode& node, std::span<const Branch> steps, LayoutNode&& replacement) {
    if (steps.empty()) {
        return std::move(replacement);
    }
    Split split = *node.split();
    LayoutNode& child = steps.front() == Branch::first ? split.first : split.second;
    child = rebuilt(child, steps.subspan(1), std::move(replacement));
    return split;
}

} // namespace

std::string_view rawName(Axis axis) { return axisNames.at(std::to_underlying(axis)); }

std::string_view rawName(Orientation orientation) {
    return orientationNames.at(std::to_underlying(orientation));
}

std::string_view rawName(Branch branch) { return branchNames.at(std::to_underlying(branch)); }

Stretch along(Axis axis, const NormRect& region) {
    return axis == Axis::vertical ? Stretch{.start = region.x, .extent = region.w}
                                  : Stretch{.start = region.y, .extent = region.h};
}

Orientation orientationOf(const Rect& frame) {
    return frame.width < frame.height ? Orientation::portrait : Orientation::landscape;
}

NodePath NodePath::appending(Branch branch) const {
    NodePath path = *this;
    path.branches.push_back(branch);
    return path;
}

std::optional<NodePath> NodePath::parent() const {
    if (branches.empty()) {
        return std::nullopt;
    }
    return NodePath{.branches = {branches.begin(), std::prev(branches.end())}};
}

LayoutNode::LayoutNode() = default;

LayoutNode::LayoutNode(ZoneLeaf leaf)
    : content_(leaf) {}

LayoutNode::LayoutNode(Split split)
    : content_(std::make_shared<const Split>(std::move(split))) {}

const ZoneLeaf* LayoutNode::zone() const { return std::get_if<ZoneLeaf>(&content_); }

const Split* LayoutNode::split() const {
    const auto* shared = std::get_if<std::shared_ptr<const Split>>(&content_);
    return shared != nullptr ? shared->get() : nullptr;
}

std::vector<TreeZone> LayoutNode::zones(const NormRect& region) const {
    std::vector<TreeZone> zones;
    NodePath path;
    listZones(*this, region, path, zones);
    return zones;
}

std::optional<LayoutNode> LayoutNode::node(const NodePath& path) const {
    const LayoutNode* reached = this;
    for (const Branch branch : path.branches) {
        const Split* split = reached->split();
        if (split == nullptr) {
            return std::nullopt;
        }
        reached = &split->child(branch);
    }
    return *reached;
}

std::optional<NormRect> LayoutNode::region(const NodePath& path, NormRect region) const {
    const LayoutNode* node = this;
    for (const Branch branch : path.branches) {
        const Split* split = node->split();
        if (split == nullptr) {
            return std::nullopt;
        }
        region = split->childRegion(branch, region);
        node = &split->child(branch);
    }
    return region;
}

LayoutNode LayoutNode::replacing(const NodePath& path, LayoutNode replacement) const {
    if (!node(path)) {
        return *this;
    }
    return rebuilt(*this, path.branches, std::move(replacement));
}

LayoutNode LayoutNode::updateLeaf(const NodePath& path, const std::function<void(ZoneLeaf&)>& body) const {
    const std::optional<LayoutNode> reached = node(path);
    if (!reached || reached->zone() == nullptr) {
        return *this;
    }
    ZoneLeaf leaf = *reached->zone();
    body(leaf);
    return replacing(path, leaf);
}

bool LayoutNode::operator==(const LayoutNode& other) const {
    const Split* mine = split();
    const Split* theirs = other.split();
    if (mine == nullptr || theirs == nullptr) {
        return mine == theirs && *zone() == *other.zone();
    }
    return mine == theirs || *mine == *theirs;
}

const LayoutNode& Split::child(Branch branch) const { return branch == Branch::first ? first : second; }

NormRect Split::childRegion(Branch branch, const NormRect& region) const {
    const auto& [x, y, w, h] = region;
    const bool isFirst = branch == Branch::first;
    switch (axis) {
    case Axis::vertical:
        return isFirst ? NormRect{.x = x, .y = y, .w = w * at, .h = h}
                       : NormRect{.x = x + w * at, .y = y, .w = w - w * at, .h = h};
    case Axis::horizontal:
        return isFirst ? NormRect{.x = x, .y = y, .w = w, .h = h * at}
                       : NormRect{.x = x, .y = y + h * at, .w = w, .h = h - h * at};
    }
    std::unreachable();
}

std::vector<TreeZone> DisplayLayout::zones() const { return root.zones(NormRect::full()); }

} // namespace karto

std::size_t std::hash<karto::NodePath>::operator()(const karto::NodePath& path) const noexcept {
    std::size_t seed = path.branches.size();
    for (const karto::Branch branch : path.branches) {
        seed = seed * 31 + std::hash<std::string_view>{}(karto::rawName(branch));
    }
    return seed;
}
