#pragma once
// The geometry of editing zones on the screen: the boundaries that a pointer can drag, what lies under it,
// and where a dragged boundary goes. Points and sizes are display points from the display's top left corner,
// y down: a fraction of NormRect times the display's size.

#include "KartoCore/Geometry.h"
#include "KartoCore/LayoutTree.h"
#include "KartoCore/Snapping.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace karto {

// A split, as the line that one drags.
struct EditBoundary {
    NodePath path;
    Axis axis = Axis::vertical;
    // The split's own area.
    NormRect region;
    double at = 0.5;

    // Where the line stands, as a fraction of the whole display.
    [[nodiscard]] double displayPosition() const;

    bool operator==(const EditBoundary&) const = default;
};

namespace ZoneEditing {

// Thickness of the strip around a boundary that takes the pointer.
inline constexpr double grabWidthInPoints = 10;
// A boundary snaps to what is closer than this.
inline constexpr double snapThresholdInPoints = 12;

// The three buttons in the middle of a zone, in a row.
inline constexpr double buttonSide = 28;
inline constexpr double buttonSpacing = 8;
// Kept free around the buttons within their zone.
inline constexpr double buttonMargin = 10;
inline constexpr Size buttonClusterSize{.width = 3 * buttonSide + 2 * buttonSpacing, .height = buttonSide};

// Every split, outer before inner, first before second. frame: the whole tree's region.
std::vector<EditBoundary> boundaries(const LayoutNode& root, const NormRect& frame);
// The same one by one, each for the time of its visit: for what runs with every movement of the pointer.
void visitBoundaries(const LayoutNode& root, const NormRect& frame,
                     const std::function<void(const EditBoundary&)>& visit);

// The boundary or the zone that the path leads to; absent when it leads nowhere or to the other.
std::optional<EditBoundary> boundary(const NodePath& path, const LayoutNode& root);
std::optional<TreeZone> zone(const NodePath& path, const LayoutNode& root);

Rect grabStrip(const EditBoundary& boundary, const Size& displaySize);

// The boundary to grab at a point: of the strips around it the one whose line is nearest, the outer one on a
// tie.
std::optional<EditBoundary> boundary(Point point, const LayoutNode& root, const Size& displaySize);

// The zone at a point; on an edge that two zones share the one listed first.
std::optional<TreeZone> zone(Point point, const LayoutNode& root, const Size& displaySize);

// The split position that puts the boundary under the point, not clamped; the present one when the split has
// no extent.
double position(Point point, const EditBoundary& boundary, const Size& displaySize);

// Where a boundary dragged to `value` comes to stand: snapped if wanted, and clamped.
double settle(double value, const EditBoundary& boundary, const LayoutNode& root, const Size& displaySize,
              Snapping::Mode snapping);

// The line's place on the display, for example "50% · 960 pt".
std::string readout(const EditBoundary& boundary, const Size& displaySize);

// Centre of the readout: above the pointer, or above the middle of the boundary without one, and within the
// display.
Point readoutPoint(std::optional<Point> pointer, const EditBoundary& boundary, const Size& displaySize);

// True when the buttons fit into a zone with their margin.
bool fitsButtons(const NormRect& rect, const Size& displaySize);

} // namespace ZoneEditing

} // namespace karto
