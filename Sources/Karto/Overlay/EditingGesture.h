#pragma once
// What the pointer and its main button do above one display whose zones are edited. A press on a boundary
// that then moves drags it, a press on a button works it when it is released there, any other press is a tap
// unless it moves away.
// A gesture that has begun goes on when what it works on changes: which boundary it drags is decided once,
// and when that has vanished nothing takes its place.
// Points are pixels of the display's window.

#include "Karto/Overlay/EditingSpace.h"
#include "Karto/Overlay/ZoneEdit.h"
#include "Karto/Overlay/ZoneEditingView.h"
#include "Karto/Platform/PointerEvent.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/LayoutTree.h"
#include "KartoCore/Snapping.h"
#include "KartoCore/ZoneEditing.h"

#include <optional>
#include <variant>

namespace karto {

class EditingGesture {
public:
    struct Tap {
        Point at;

        bool operator==(const Tap&) const = default;
    };

    // What a gesture asks for. The gesture is up to date before it asks.
    using Intent = std::variant<ZoneEdit, Tap>;

    // What there is to edit from now on, if anything. pointer: where it is, if it is above the window; a
    // gesture that has begun knows better.
    void work(std::optional<LayoutNode> root, const EditingSpace& space, std::optional<Point> pointer);

    std::optional<Intent> take(const PointerEvent& event);

    // The pointer did not move for a while.
    void rested();

    // The button is down.
    [[nodiscard]] bool isUnderWay() const { return !std::holds_alternative<Hovering>(phase_); }

    // Absent when there is nothing to edit.
    [[nodiscard]] const std::optional<ZoneEditingView>& view() const { return view_; }

    // Of the boundary that the cursor is to be one for.
    [[nodiscard]] std::optional<Axis> cursorAxis() const { return cursorAxis_; }

    // Whether rested() would show something.
    [[nodiscard]] bool awaitsRest() const;

private:
    struct Hovering {};

    struct Pressed {
        Point start;
    };

    struct DraggingBoundary {
        NodePath path;
        Axis axis = Axis::vertical;
        bool hasVanished = false;
    };

    struct DraggingElsewhere {
        Point start;
    };

    struct OnButton {
        TreeZone zone;
        ZoneButton button = ZoneButton::splitIntoColumns;
    };

    // Until the button goes up.
    struct DoingNothing {};

    using Phase =
        std::variant<Hovering, Pressed, DraggingBoundary, DraggingElsewhere, OnButton, DoingNothing>;

    void press(Point pointer);
    std::optional<Intent> drag(Point pointer, Snapping::Mode snapping);
    [[nodiscard]] std::optional<Intent> intentOfRelease(Point pointer) const;
    [[nodiscard]] std::optional<Intent> commitment() const;

    // In points.
    [[nodiscard]] double distance(Point from, Point to) const;
    [[nodiscard]] std::optional<EditBoundary> boundaryAt(Point point) const;
    [[nodiscard]] std::optional<EditBoundary> boundaryOf(const DraggingBoundary& drag) const;
    // The zone under a point if it has buttons.
    [[nodiscard]] std::optional<TreeZone> zoneWithButtonsAt(Point point) const;
    [[nodiscard]] bool isOnItsButton(const OnButton& press) const;
    [[nodiscard]] Phase phaseOfDragFrom(Point start) const;

    void checkAgainstTree();
    void update();
    void showBoundaries(ZoneEditingView& view);
    void showButtons(ZoneEditingView& view) const;

    std::optional<LayoutNode> root_;
    EditingSpace space_;
    std::optional<Point> pointer_;
    Phase phase_;
    std::optional<ZoneEditingView> view_;
    std::optional<Axis> cursorAxis_;
};

} // namespace karto
