#include "Karto/Switcher/SwitcherWindow.h"

#include <utility>

namespace karto {

SwitcherWindow::SwitcherWindow(OverlayStage& stage, PaintSwitcher paint)
    : stage_(stage)
    , paint_(std::move(paint))
    , window_(stage.createWindow({})) {
    window_->setLevel(StageLevel::panel);
    styleChanges_ = stage_.observeStyleChanges([this] {
        if (isShown_) {
            repaint();
            stage_.present();
        }
    });
}

void SwitcherWindow::show(SwitcherPanelView view, const Rect& frame) {
    view_ = std::move(view);
    isShown_ = true;
    repaint();
    window_->setFrame(frame);
    window_->orderFront();
    stage_.present();
}

void SwitcherWindow::orderOut() {
    isShown_ = false;
    window_->orderOut();
    stage_.present();
}

void SwitcherWindow::repaint() { window_->setPicture(paint_(view_, stage_.style())); }

} // namespace karto
