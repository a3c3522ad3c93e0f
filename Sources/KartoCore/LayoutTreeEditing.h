#pragma once
// The edits of a display's zone tree. Each returns a new tree that shares with the old one whatever it did
// not change. A path that does not end where an edit needs it leaves the tree as it was.

#include "KartoCore/LayoutTree.h"

#include <optional>

namespace karto::LayoutTreeEditing {

// The position that a split gets when moved to `at`: kept within 0.01...0.99, so that no zone vanishes.
double clampedPosition(double at);

// True when the path ends on a zone that may be divided: its halves would not be nested deeper than a tree
// may be.
bool canSplit(const NodePath& path, const LayoutNode& root);

// The zone at `path` divided in the middle, its pin kept by the first half; unchanged unless canSplit().
LayoutNode split(const NodePath& path, Axis axis, const LayoutNode& root);

bool canRemoveZone(const NodePath& path, const LayoutNode& root);

// The zone at `path` gone and its space given to its sibling; absent when the path ends on no zone or on the
// display's only one.
std::optional<LayoutNode> removeZone(const NodePath& path, const LayoutNode& root);

// The split at `path` moved to `at`, a fraction of its own region, clamped.
LayoutNode moveBoundary(const NodePath& path, double at, const LayoutNode& root);

} // namespace karto::LayoutTreeEditing
