#pragma once
// The overlay's window on one display. It paints only when what it shows, or how, has changed.

#include "Karto/Overlay/OverlayContentView.h"
#include "Karto/Platform/OverlayStage.h"
#include "Karto/Platform/Registration.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace karto {

using PaintOverlay = std::function<Picture(const OverlayContentView&, const StageStyle&)>;

class OverlayWindow {
public:
    // Hidden and empty at first. frame: the display's visible frame, global points. The stage and what paints
    // outlive the window.
    OverlayWindow(OverlayStage& stage, const PaintOverlay& paint, const Rect& frame, bool isAppActive);

    // A preview window is of normal level and takes the mouse while the application is active; any other one
    // floats and lets clicks through.
    void setPreview(bool isPreview);
    void setAppActive(bool isAppActive);
    void setView(OverlayContentView view);

    // onZoneTap: hears the number of the zone clicked, or none for a click beside the zones.
    void setZoneTapHandler(std::function<void(std::optional<int>)> onZoneTap) {
        onZoneTap_ = std::move(onZoneTap);
    }

    void prepare() { window_->prepare(); }

    void orderFront() { window_->orderFront(); }

    void orderBelow(WindowHandle window) { window_->orderBelow(window); }

    void orderOut() { window_->orderOut(); }

private:
    void updateMouse();
    void clicked(Point position) const;

    OverlayStage& stage_;
    const PaintOverlay& paint_;
    std::unique_ptr<BorderlessWindow> window_;
    bool isPreview_ = false;
    bool isAppActive_ = false;
    OverlayContentView view_;
    // In which the view was painted last; absent before the first time.
    std::optional<StageStyle> style_;
    std::function<void(std::optional<int>)> onZoneTap_;
    Registration clicks_;
};

} // namespace karto
