#pragma once
// A display's zone tree: which part of the display every zone gets, and in which order zones are listed.
// A tree is a value: copies are independent and cheap (subtrees are shared and never change), an edit returns
// a new tree. Rectangles are NormRect, fractions of the display's visible frame, y down.

#include "KartoCore/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace karto {

// vertical: the dividing line is vertical and the split divides the width; horizontal: it divides the height.
enum class Axis : std::uint8_t { vertical, horizontal };

enum class Orientation : std::uint8_t { landscape, portrait };

// One step down from a split. first is left or top, second is right or bottom.
enum class Branch : std::uint8_t { first, second };

std::string_view rawName(Axis axis);
std::string_view rawName(Orientation orientation);
std::string_view rawName(Branch branch);

// What a split of an axis divides of a region.
struct Stretch {
    double start = 0;
    double extent = 0;
};

Stretch along(Axis axis, const NormRect& region);

// portrait only when the frame is narrower than tall: a square display is landscape.
Orientation orientationOf(const Rect& frame);

// The way from a display's root to a node; the empty path is the root.
struct NodePath {
    std::vector<Branch> branches;

    [[nodiscard]] NodePath appending(Branch branch) const;
    // Absent for the root.
    [[nodiscard]] std::optional<NodePath> parent() const;

    bool operator==(const NodePath&) const = default;
};

struct ZoneLeaf {
    // The ring number that the user pinned this zone to, as written; absent lets the ring number the zone.
    std::optional<std::int64_t> pinnedOrder;

    bool operator==(const ZoneLeaf&) const = default;
};

struct Split;

struct TreeZone;

class LayoutNode {
public:
    // A node may have at most this many splits above it.
    static constexpr int maximumDepth = 32;
    // A split position keeps this much of its region on either side.
    static constexpr double minimumExtent = 0.01;

    // A zone without a pin.
    LayoutNode();
    explicit(false) LayoutNode(ZoneLeaf leaf);
    explicit(false) LayoutNode(Split split);

    // The leaf, or null when the node is a split.
    [[nodiscard]] const ZoneLeaf* zone() const;
    // The split, or null when the node is a zone. Lives as long as any tree that shares it.
    [[nodiscard]] const Split* split() const;

    // All zones below this node within `region`, depth first, first before second, not rounded.
    [[nodiscard]] std::vector<TreeZone> zones(const NormRect& region) const;

    // The node at the end of the path; absent when a zone is met while steps remain.
    [[nodiscard]] std::optional<LayoutNode> node(const NodePath& path) const;

    // What the node at the end of the path gets of `region`, this node's own; absent when a zone is met while
    // steps remain.
    [[nodiscard]] std::optional<NormRect> region(const NodePath& path, NormRect region) const;

    // The tree with the node at `path` replaced; the unchanged tree when a zone is met while steps remain.
    // Only the splits above the node are new, everything else is shared with this tree.
    [[nodiscard]] LayoutNode replacing(const NodePath& path, LayoutNode replacement) const;

    // The tree with the leaf at `path` changed by `body`; the unchanged tree when the path does not end on a
    // leaf.
    [[nodiscard]] LayoutNode updateLeaf(const NodePath& path,
                                        const std::function<void(ZoneLeaf&)>& body) const;

    bool operator==(const LayoutNode& other) const;

private:
    std::variant<ZoneLeaf, std::shared_ptr<const Split>> content_;
};

struct Split {
    Axis axis = Axis::vertical;
    // Fraction of the region that `first` receives.
    double at = 0.5;
    LayoutNode first;
    LayoutNode second;

    [[nodiscard]] const LayoutNode& child(Branch branch) const;
    // The part of `region`, this split's own, that goes to the child.
    [[nodiscard]] NormRect childRegion(Branch branch, const NormRect& region) const;

    bool operator==(const Split&) const = default;
};

struct TreeZone {
    NormRect rect;
    ZoneLeaf leaf;
    NodePath path;

    bool operator==(const TreeZone&) const = default;
};

// The zones of one display in one orientation. A layout binds to the connected display with its name and
// orientation.
struct DisplayLayout {
    std::string name;
    Orientation orientation = Orientation::landscape;
    LayoutNode root;

    [[nodiscard]] std::vector<TreeZone> zones() const;

    bool operator==(const DisplayLayout&) const = default;
};

} // namespace karto

template<>
struct std::hash<karto::NodePath> {
    std::size_t operator()(const karto::NodePath& path) const noexcept;
};
