#include "KartoCore/ZoneEditing.h"

#include "KartoCore/LayoutTreeEditing.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace karto {

double EditBoundary::displayPosition() const {
    const Stretch divided = along(axis, region);
    return divided.start + divided.extent * at;
}

namespace ZoneEditing {

namespace {

// The middle of the readout keeps this far from the pointer and from the display's edges.
constexpr double readoutLift = 34;
constexpr double readoutSideMargin = 90;
constexpr double readoutTopMargin = 24;

using Visit = std::function<void(const EditBoundary&)>;

// `boundary` holds the path to the node, which is the same again afterwards; all visits share it.
void visitSplits(const LayoutNode& node, const NormRect& region, EditBoundary& boundary, const Visit& visit) {
    const Split* split = node.split();
    if (split == nullptr) {
        return;
    }
    boundary.axis = split->axis;
    boundary.region = region;
    boundary.at = split->at;
    visit(boundary);
    for (const Branch branch : {Branch::first, Branch::second}) {
        boundary.path.branches.push_back(branch);
        visitSplits(split->child(branch), split->childRegion(branch, region), boundary, visit);
        boundary.path.branches.pop_back();
    }
}

Rect inPoints(const NormRect& rect, const Size& displaySize) {
    return rect.pixelRect({.x = 0, .y = 0, .width = displaySize.width, .height = displaySize.height});
}

// The side of the display along which a boundary of that axis moves.
double displayLength(Axis axis, const Size& displaySize) {
    return axis == Axis::vertical ? displaySize.width : displaySize.height;
}

double coordinate(Axis axis, Point point) { return axis == Axis::vertical ? point.x : point.y; }

double distance(Point point, const EditBoundary& boundary, const Size& displaySize) {
    const double line = displayLength(boundary.axis, displaySize) * boundary.displayPosition();
    return std::abs(line - coordinate(boundary.axis, point));
}

// All four edges belong to the rectangle.
bool holds(const Rect& rect, Point point) {
    return rect.x <= point.x && point.x <= rect.maxX() && rect.y <= point.y && point.y <= rect.maxY();
}

} // namespace

std::vector<EditBoundary> boundaries(const LayoutNode& root, const NormRect& frame) {
    std::vector<EditBoundary> boundaries;
    visitBoundaries(root, frame, [&](const EditBoundary& each) { boundaries.push_back(each); });
    return boundaries;
}

void visitBoundaries(const LayoutNode& root, const NormRect& frame, const Visit& visit) {
    EditBoundary visited;
    visitSplits(root, frame, visited, visit);
}

std::optional<EditBoundary> boundary(const NodePath& path, const LayoutNode& root) {
    const auto node = root.node(path);
    const Split* split = node ? node->split() : nullptr;
    if (split == nullptr) {
        return std::nullopt;
    }
    return EditBoundary{.path = path,
                        .axis = split->axis,
                        .region = root.region(path, NormRect::full()).value_or(NormRect()),
                        .at = split->at};
}

std::optional<TreeZone> zone(const NodePath& path, const LayoutNode& root) {
    const auto node = root.node(path);
    const ZoneLeaf* leaf = node ? node->zone() : nullptr;
    if (leaf == nullptr) {
        return std::nullopt;
    }
    return TreeZone{
        .rect = root.region(path, NormRect::full()).value_or(NormRect()), .leaf = *leaf, .path = path};
}

Rect grabStrip(const EditBoundary& boundary, const Size& displaySize) {
    Rect strip = inPoints(boundary.region, displaySize);
    const double line = displayLength(boundary.axis, displaySize) * boundary.displayPosition();
    switch (boundary.axis) {
    case Axis::vertical:
        strip.x = line - grabWidthInPoints / 2;
        strip.width = grabWidthInPoints;
        break;
    case Axis::horizontal:
        strip.y = line - grabWidthInPoints / 2;
        strip.height = grabWidthInPoints;
        break;
    }
    return strip;
}

std::optional<EditBoundary> boundary(Point point, const LayoutNode& root, const Size& displaySize) {
    std::optional<EditBoundary> nearest;
    visitBoundaries(root, NormRect::full(), [&](const EditBoundary& each) {
        if (grabStrip(each, displaySize).contains(point) &&
            (!nearest || distance(point, each, displaySize) < distance(point, *nearest, displaySize))) {
            nearest = each;
        }
    });
    return nearest;
}

std::optional<TreeZone> zone(Point point, const LayoutNode& root, const Size& displaySize) {
    const std::vector<TreeZone> zones = root.zones(NormRect::full());
    const auto found = std::ranges::find_if(
        zones, [&](const TreeZone& each) { return holds(inPoints(each.rect, displaySize), point); });
    return found != zones.end() ? std::optional(*found) : std::nullopt;
}

double position(Point point, const EditBoundary& boundary, const Size& displaySize) {
    const Stretch divided = along(boundary.axis, boundary.region);
    const double length = displayLength(boundary.axis, displaySize);
    const bool hasExtent = divided.extent > 0 && length > 0;
    if (!hasExtent) {
        return boundary.at;
    }
    return (coordinate(boundary.axis, point) / length - divided.start) / divided.extent;
}

double settle(double value, const EditBoundary& boundary, const LayoutNode& root, const Size& displaySize,
              Snapping::Mode snapping) {
    if (snapping == Snapping::Mode::off) {
        return LayoutTreeEditing::clampedPosition(value);
    }
    const auto candidates = Snapping::candidates(boundary.path, root, NormRect::full(), boundary.axis);
    const double extent =
        along(boundary.axis, boundary.region).extent * displayLength(boundary.axis, displaySize);
    return LayoutTreeEditing::clampedPosition(Snapping::resolve(
        value, candidates, {.extentInPoints = extent, .thresholdInPoints = snapThresholdInPoints}));
}

std::string readout(const EditBoundary& boundary, const Size& displaySize) {
    const double position = boundary.displayPosition();
    return fmt::format("{}% · {} pt", std::lround(position * 100),
                       std::lround(position * displayLength(boundary.axis, displaySize)));
}

Point readoutPoint(std::optional<Point> pointer, const EditBoundary& boundary, const Size& displaySize) {
    const Point anchor = pointer.value_or(grabStrip(boundary, displaySize).center());
    // On a display too small for both margins the right and the bottom one hold.
    return {.x = std::min(displaySize.width - readoutSideMargin, std::max(readoutSideMargin, anchor.x)),
            .y = std::min(displaySize.height - readoutTopMargin,
                          std::max(readoutTopMargin, anchor.y - readoutLift))};
}

bool fitsButtons(const NormRect& rect, const Size& displaySize) {
    const Rect zone = inPoints(rect, displaySize);
    return zone.width >= buttonClusterSize.width + 2 * buttonMargin &&
           zone.height >= buttonClusterSize.height + 2 * buttonMargin;
}

} // namespace ZoneEditing

} // namespace karto
