#pragma once
// The switcher's panel: one window above the overlay that lets clicks through, hidden and empty at first.

#include "Karto/Platform/OverlayStage.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Switcher/SwitcherPanelView.h"

#include <functional>
#include <memory>
#include <utility>

namespace karto {

using PaintSwitcher = std::function<Picture(const SwitcherPanelView&, const StageStyle&)>;

class SwitcherWindow {
public:
    SwitcherWindow(OverlayStage& stage, PaintSwitcher paint);

    // Pixels to a point of the panel.
    [[nodiscard]] double scale() const { return stage_.style().scale; }

    // Of the scale or of the look: a panel that is shown has to be shown again.
    [[nodiscard]] Registration observeStyleChanges(std::function<void()> onChange) {
        return stage_.observeStyleChanges(std::move(onChange));
    }

    // Brings the panel to the front. frame: global points.
    void show(const SwitcherPanelView& view, const Rect& frame);
    void orderOut();

private:
    OverlayStage& stage_;
    PaintSwitcher paint_;
    std::unique_ptr<BorderlessWindow> window_;
};

} // namespace karto
