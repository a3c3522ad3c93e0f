#include "Karto/Updates/Views/QtUpdateWindow.h"

#include "Karto/Updates/Views/UpdateWindowView.h"

#include <utility>

namespace karto {

QtUpdateWindow::QtUpdateWindow(std::function<void(QWidget&)> present)
    : present_(std::move(present)) {}

QtUpdateWindow::~QtUpdateWindow() = default;

void QtUpdateWindow::show(const UpdateView& view, bool isAsked) {
    if (!window_) {
        window_ = std::make_unique<UpdateWindowView>([this](UpdateIntent intent) { onIntent(intent); });
    }
    window_->tell(view);
    if (isAsked || !window_->isVisible()) {
        present_(*window_);
    }
}

void QtUpdateWindow::close() {
    // A closed window needs no memory; the person may have closed it with one of its own buttons.
    if (window_) {
        window_->hide();
        window_.release()->deleteLater();
    }
}

} // namespace karto
