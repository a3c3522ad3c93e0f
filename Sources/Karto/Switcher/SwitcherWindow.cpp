#include "Karto/Switcher/SwitcherWindow.h"

#include <utility>

namespace karto {

SwitcherWindow::SwitcherWindow(OverlayStage& stage, SwitcherPainter painter)
    : stage_(stage)
    , painter_(std::move(painter))
    , window_(stage.createWindow({})) {
    window_->setLevel(StageLevel::panel);
    styleChanges_ = stage_.observeStyleChanges([this] {
        if (isShown_) {
            paint();
            stage_.present();
        }
    });
}

void SwitcherWindow::show(SwitcherPanelView view, const Rect& frame) {
    view_ = std::move(view);
    isShown_ = true;
    paint();
    window_->setFrame(frame);
    window_->orderFront();
    stage_.present();
}

void SwitcherWindow::orderOut() {
    isShown_ = false;
    window_->orderOut();
    stage_.present();
}

void SwitcherWindow::paint() { window_->setPicture(painter_(view_, stage_.style())); }

} // namespace karto
