#include "Karto/Overlay/EditingGesture.h"

#include <cmath>
#include <utility>

namespace karto {

namespace {

// Points.
constexpr double leastDrag = 1;
// A hand trembles while it taps.
constexpr double mostTremble = 4;

} // namespace

void EditingGesture::work(std::optional<LayoutNode> root, const EditingSpace& space,
                          std::optional<Point> pointer) {
    root_ = std::move(root);
    space_ = space;
    if (!isUnderWay()) {
        pointer_ = pointer;
    }
    checkAgainstTree();
    update();
}

std::optional<EditingGesture::Intent> EditingGesture::take(const PointerEvent& event) {
    pointer_ = event.place;
    std::optional<Intent> intent;
    switch (event.action) {
    case PointerAction::moved: break;
    case PointerAction::left: pointer_.reset(); break;
    case PointerAction::pressed: press(event.place); break;
    case PointerAction::dragged:
        intent = drag(event.place, (event.held.bits & ModifierBits::option) != 0 ? Snapping::Mode::off
                                                                                 : Snapping::Mode::on);
        break;
    case PointerAction::released:
        intent = intentOfRelease(event.place);
        phase_ = Hovering();
        break;
    case PointerAction::cancelled:
        intent = commitment();
        phase_ = Hovering();
        pointer_.reset();
        break;
    }
    update();
    return intent;
}

void EditingGesture::press(Point pointer) {
    phase_ = Pressed{.start = pointer};
    const auto zone = zoneWithButtonsAt(pointer);
    const auto button = zone ? ZoneButtons::at(pointer, zone->rect, space_) : std::nullopt;
    if (root_ && button) {
        phase_ = ZoneButtons::isEnabled(*button, zone->path, *root_)
                     ? Phase(OnButton{.zone = *zone, .button = *button})
                     : DoingNothing();
    }
}

std::optional<EditingGesture::Intent> EditingGesture::drag(Point pointer, Snapping::Mode snapping) {
    if (const auto* press = std::get_if<Pressed>(&phase_);
        press != nullptr && distance(press->start, pointer) >= leastDrag) {
        phase_ = phaseOfDragFrom(press->start);
    }
    const auto* drag = std::get_if<DraggingBoundary>(&phase_);
    const auto boundary = drag != nullptr ? boundaryOf(*drag) : std::nullopt;
    if (!root_ || !boundary) {
        return std::nullopt;
    }
    const auto size = space_.displaySize();
    const double wanted = ZoneEditing::position(space_.points(pointer), *boundary, size);
    return ZoneEdits::DragBoundary{.path = boundary->path,
                                   .to = ZoneEditing::settle(wanted, *boundary, *root_, size, snapping)};
}

std::optional<EditingGesture::Intent> EditingGesture::intentOfRelease(Point pointer) const {
    if (const auto* press = std::get_if<Pressed>(&phase_)) {
        return Tap{.at = press->start};
    }
    if (const auto* drag = std::get_if<DraggingElsewhere>(&phase_);
        drag != nullptr && distance(drag->start, pointer) <= mostTremble) {
        return Tap{.at = drag->start};
    }
    if (const auto* press = std::get_if<OnButton>(&phase_); press != nullptr && isOnItsButton(*press)) {
        return ZoneButtons::edit(press->button, press->zone.path);
    }
    return commitment();
}

std::optional<EditingGesture::Intent> EditingGesture::commitment() const {
    return std::holds_alternative<DraggingBoundary>(phase_)
               ? std::optional<Intent>(ZoneEdits::CommitBoundary())
               : std::nullopt;
}

void EditingGesture::rested() {
    if (view_ && awaitsRest()) {
        view_->showsHelp = true;
    }
}

bool EditingGesture::awaitsRest() const {
    return !isUnderWay() && view_ && view_->pointedAt && !view_->showsHelp;
}

double EditingGesture::distance(Point from, Point to) const {
    return std::hypot(to.x - from.x, to.y - from.y) / space_.scale;
}

std::optional<EditBoundary> EditingGesture::boundaryAt(Point point) const {
    return root_ ? ZoneEditing::boundary(space_.points(point), *root_, space_.displaySize()) : std::nullopt;
}

std::optional<EditBoundary> EditingGesture::boundaryOf(const DraggingBoundary& drag) const {
    if (!root_ || drag.hasVanished) {
        return std::nullopt;
    }
    auto boundary = ZoneEditing::boundary(drag.path, *root_);
    return boundary && boundary->axis == drag.axis ? boundary : std::nullopt;
}

std::optional<TreeZone> EditingGesture::zoneWithButtonsAt(Point point) const {
    if (!root_) {
        return std::nullopt;
    }
    auto zone = ZoneEditing::zone(space_.points(point), *root_, space_.displaySize());
    return zone && ZoneEditing::fitsButtons(zone->rect, space_.displaySize()) ? zone : std::nullopt;
}

bool EditingGesture::isOnItsButton(const OnButton& press) const {
    return pointer_ && ZoneButtons::at(*pointer_, press.zone.rect, space_) == press.button;
}

EditingGesture::Phase EditingGesture::phaseOfDragFrom(Point start) const {
    if (const auto boundary = boundaryAt(start)) {
        return DraggingBoundary{.path = boundary->path, .axis = boundary->axis};
    }
    return DraggingElsewhere{.start = start};
}

void EditingGesture::checkAgainstTree() {
    if (auto* const drag = std::get_if<DraggingBoundary>(&phase_)) {
        drag->hasVanished = !boundaryOf(*drag);
    } else if (const auto* press = std::get_if<OnButton>(&phase_)) {
        // A button that moved away from under the pointer is not the one that was pressed.
        if (!root_ || ZoneEditing::zone(press->zone.path, *root_) != press->zone) {
            phase_ = DoingNothing();
        }
    }
}

void EditingGesture::update() {
    const auto before = std::exchange(view_, std::nullopt);
    cursorAxis_.reset();
    if (!root_) {
        return;
    }
    ZoneEditingView view;
    view.root = *root_;
    showBoundaries(view);
    showButtons(view);
    // Help stays until the pointer leaves its button.
    view.showsHelp = before && before->showsHelp && !isUnderWay() && view.pointedAt &&
                     view.pointedAt == before->pointedAt && view.buttonsFor == before->buttonsFor;
    view_ = std::move(view);
}

void EditingGesture::showBoundaries(ZoneEditingView& view) {
    if (const auto* drag = std::get_if<DraggingBoundary>(&phase_)) {
        if (boundaryOf(*drag)) {
            view.dragging = view.hot = drag->path;
            view.pointer = pointer_;
            cursorAxis_ = drag->axis;
        }
        return;
    }
    const auto hot = pointer_ ? boundaryAt(*pointer_) : std::nullopt;
    if (!hot) {
        return;
    }
    view.hot = hot->path;
    if (std::holds_alternative<Hovering>(phase_) || std::holds_alternative<Pressed>(phase_)) {
        cursorAxis_ = hot->axis;
    }
}

void EditingGesture::showButtons(ZoneEditingView& view) const {
    if (const auto* press = std::get_if<OnButton>(&phase_)) {
        view.buttonsFor = press->zone.path;
        if (isOnItsButton(*press)) {
            view.pointedAt = press->button;
            view.isPressed = true;
        }
        return;
    }
    if (!pointer_ || std::holds_alternative<DraggingBoundary>(phase_)) {
        return;
    }
    if (const auto zone = zoneWithButtonsAt(*pointer_)) {
        view.buttonsFor = zone->path;
        if (!std::holds_alternative<DraggingElsewhere>(phase_)) {
            view.pointedAt = ZoneButtons::at(*pointer_, zone->rect, space_);
        }
    }
}

} // namespace karto
