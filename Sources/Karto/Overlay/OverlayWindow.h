#pragma once
// The overlay's window on one display. It paints only when what it shows, or how, has changed.

#include "Karto/Overlay/EditingGesture.h"
#include "Karto/Overlay/OverlayContentView.h"
#include "Karto/Overlay/ZoneEdit.h"
#include "Karto/Platform/OverlayStage.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace karto {

using PaintOverlay = std::function<Picture(const OverlayContentView&, const StageStyle&)>;

class OverlayWindow {
public:
    // Hidden and empty at first. frame: the display's visible frame, global points. The stage, the scheduler
    // and what paints outlive the window.
    OverlayWindow(OverlayStage& stage, Scheduler& scheduler, const PaintOverlay& paint, const Rect& frame,
                  bool isAppActive);

    // A preview window is of normal level and takes the mouse while the application is active; any other one
    // floats and lets clicks through.
    void setPreview(bool isPreview);
    void setAppActive(bool isAppActive);
    // editing: the zones of the view where they can be edited. What the view shows of the pointer's doings is
    // the window's own matter.
    void setView(OverlayContentView view, const std::optional<ZoneEditingModel>& editing);

    // onZoneTap: hears the number of the zone clicked, or none for a click beside the zones.
    void setZoneTapHandler(std::function<void(std::optional<int>)> onZoneTap) {
        onZoneTap_ = std::move(onZoneTap);
    }

    void prepare() { window_->prepare(); }

    void orderFront() { window_->orderFront(); }

    void orderBelow(WindowHandle window) { window_->orderBelow(window); }

    void orderOut() { window_->orderOut(); }

    // Ends a gesture as if it had been taken away. What it asks for may end the window.
    void endGesture();

private:
    void updateMouse();
    void take(const PointerEvent& event);
    void perform(const EditingGesture::Intent& intent);
    void tap(Point position) const;
    // Whether there was something new to show.
    bool showGesture();
    void paint(const StageStyle& style);

    OverlayStage& stage_;
    Scheduler& scheduler_;
    const PaintOverlay& paint_;
    std::unique_ptr<BorderlessWindow> window_;
    bool isPreview_ = false;
    bool isAppActive_ = false;
    OverlayContentView view_;
    // In which the view was painted last; absent before the first time.
    std::optional<StageStyle> style_;
    EditingGesture gesture_;
    Cursor cursor_ = Cursor::arrow;
    std::function<void(const ZoneEdit&)> performEdit_;
    std::function<void(std::optional<int>)> onZoneTap_;
    Registration rest_;
    Registration pointerEvents_;
    WeakCallbacks callbacks_;
};

} // namespace karto
