#include "Karto/Overlay/OverlayWindow.h"

#include <algorithm>
#include <chrono>
#include <variant>

namespace karto {

namespace {

// Before a button explains itself.
constexpr std::chrono::milliseconds restTime{700};

Cursor cursorFor(std::optional<Axis> boundary) {
    if (!boundary) {
        return Cursor::arrow;
    }
    return *boundary == Axis::vertical ? Cursor::resizeLeftRight : Cursor::resizeUpDown;
}

} // namespace

OverlayWindow::OverlayWindow(OverlayStage& stage, Scheduler& scheduler, const PaintOverlay& paint,
                             const Rect& frame, bool isAppActive)
    : stage_(stage)
    , scheduler_(scheduler)
    , paint_(paint)
    , window_(stage.createWindow(frame))
    , isAppActive_(isAppActive) {
    pointerEvents_ = window_->observePointer([this](const PointerEvent& event) { take(event); });
}

void OverlayWindow::setPreview(bool isPreview) {
    isPreview_ = isPreview;
    window_->setLevel(isPreview ? StageLevel::normal : StageLevel::floating);
    updateMouse();
}

void OverlayWindow::setAppActive(bool isAppActive) {
    isAppActive_ = isAppActive;
    updateMouse();
}

void OverlayWindow::setView(OverlayContentView view, const std::optional<ZoneEditingModel>& editing) {
    const auto style = stage_.style();
    if (editing) {
        performEdit_ = editing->perform;
    }
    const bool followsPointer = editing && !gesture_.isUnderWay();
    gesture_.work(editing ? std::optional(editing->root) : std::nullopt,
                  {.extent = view.displayFrame.size(), .scale = style.scale},
                  followsPointer ? window_->pointer() : std::nullopt);
    view.editing = view_.editing;
    const bool isPainted = style_ == style && view_ == view;
    view_ = std::move(view);
    style_ = style;
    if (!showGesture() && !isPainted) {
        paint(style);
    }
}

void OverlayWindow::endGesture() {
    if (gesture_.isUnderWay()) {
        take({.action = PointerAction::cancelled, .place = {}, .held = {}});
    }
}

void OverlayWindow::updateMouse() { window_->setIgnoresMouse(!isPreview_ || !isAppActive_); }

void OverlayWindow::take(const PointerEvent& event) {
    const auto intent = gesture_.take(event);
    const auto showRest = callbacks_.wrap([this] {
        if (showGesture()) {
            stage_.present();
        }
    });
    // Most that is asked for brings a new view, which shows the gesture as it is now.
    if (intent) {
        perform(*intent);
    }
    showRest();
}

void OverlayWindow::perform(const EditingGesture::Intent& intent) {
    if (const auto* touch = std::get_if<EditingGesture::Tap>(&intent)) {
        tap(touch->at);
    } else if (const auto perform = performEdit_) {
        // Who performs it may set another one.
        perform(std::get<ZoneEdit>(intent));
    }
}

void OverlayWindow::tap(Point position) const {
    if (!onZoneTap_) {
        return;
    }
    const Point global{.x = view_.displayFrame.x + position.x, .y = view_.displayFrame.y + position.y};
    std::optional<int> number;
    if (const auto* zones = std::get_if<OverlayZones>(&view_.content)) {
        const auto zone =
            std::ranges::find_if(*zones, [&](const OverlayZone& each) { return each.rect.contains(global); });
        if (zone != zones->end()) {
            number = zone->number;
        }
    }
    // The handler may set another one.
    const auto onZoneTap = onZoneTap_;
    onZoneTap(number);
}

bool OverlayWindow::showGesture() {
    const auto cursor = cursorFor(gesture_.cursorAxis());
    if (cursor != cursor_) {
        cursor_ = cursor;
        window_->setCursor(cursor);
    }
    rest_ = gesture_.awaitsRest() ? scheduler_.after(restTime,
                                                     [this] {
                                                         gesture_.rested();
                                                         if (showGesture()) {
                                                             stage_.present();
                                                         }
                                                     })
                                  : Registration();
    if (!style_ || view_.editing == gesture_.view()) {
        return false;
    }
    view_.editing = gesture_.view();
    paint(*style_);
    return true;
}

void OverlayWindow::paint(const StageStyle& style) { window_->setPicture(paint_(view_, style)); }

} // namespace karto
