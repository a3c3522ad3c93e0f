#include "Karto/Switcher/SwitcherWindow.h"

namespace karto {

SwitcherWindow::SwitcherWindow(OverlayStage& stage, PaintSwitcher paint)
    : stage_(stage)
    , paint_(std::move(paint))
    , window_(stage.createWindow({})) {
    window_->setLevel(StageLevel::panel);
}

void SwitcherWindow::show(const SwitcherPanelView& view, const Rect& frame) {
    window_->setPicture(paint_(view, stage_.style()));
    window_->setFrame(frame);
    window_->orderFront();
    stage_.present();
}

void SwitcherWindow::orderOut() {
    window_->orderOut();
    stage_.present();
}

} // namespace karto
