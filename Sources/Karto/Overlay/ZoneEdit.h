#pragma once
// What a person does to the zones of one display right on the screen, and who is told.

#include "KartoCore/LayoutTree.h"

#include <functional>
#include <variant>

namespace karto {

namespace ZoneEdits {

struct Split {
    NodePath path;
    Axis axis = Axis::vertical;

    bool operator==(const Split&) const = default;
};

struct Remove {
    NodePath path;

    bool operator==(const Remove&) const = default;
};

// Moves the split at the path without an undo step.
struct DragBoundary {
    NodePath path;
    double to = 0.5;

    bool operator==(const DragBoundary&) const = default;
};

// Makes one undo step of the moves since the drag began.
struct CommitBoundary {
    bool operator==(const CommitBoundary&) const = default;
};

} // namespace ZoneEdits

using ZoneEdit =
    std::variant<ZoneEdits::Split, ZoneEdits::Remove, ZoneEdits::DragBoundary, ZoneEdits::CommitBoundary>;

// The zones of a display that can be edited on it.
struct ZoneEditingModel {
    LayoutNode root;
    std::function<void(const ZoneEdit&)> perform;
};

} // namespace karto
