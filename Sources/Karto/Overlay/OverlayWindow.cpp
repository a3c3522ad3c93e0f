#include "Karto/Overlay/OverlayWindow.h"

#include <algorithm>
#include <variant>

namespace karto {

OverlayWindow::OverlayWindow(OverlayStage& stage, const PaintOverlay& paint, const Rect& frame,
                             bool isAppActive)
    : stage_(stage)
    , paint_(paint)
    , window_(stage.createWindow(frame))
    , isAppActive_(isAppActive) {
    clicks_ = window_->observeClicks([this](Point position) { clicked(position); });
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

void OverlayWindow::setView(OverlayContentView view) {
    const auto style = stage_.style();
    if (style_ == style && view_ == view) {
        return;
    }
    view_ = std::move(view);
    style_ = style;
    window_->setPicture(paint_(view_, style));
}

void OverlayWindow::updateMouse() { window_->setIgnoresMouse(!isPreview_ || !isAppActive_); }

void OverlayWindow::clicked(Point position) const {
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

} // namespace karto
