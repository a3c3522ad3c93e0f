#pragma once
// The update window on Qt, made when it is first shown.

#include "Karto/Updates/UpdateView.h"

#include <memory>

class QWidget;

namespace karto {

class UpdateWindowView;

class QtUpdateWindow final : public UpdateWindow {
public:
    // present: shows a window and makes it the active one.
    explicit QtUpdateWindow(std::function<void(QWidget&)> present);
    QtUpdateWindow(const QtUpdateWindow&) = delete;
    QtUpdateWindow(QtUpdateWindow&&) = delete;
    QtUpdateWindow& operator=(const QtUpdateWindow&) = delete;
    QtUpdateWindow& operator=(QtUpdateWindow&&) = delete;
    ~QtUpdateWindow() override;

    void show(const UpdateView& view, bool isAsked) override;
    void close() override;

private:
    std::function<void(QWidget&)> present_;
    std::unique_ptr<UpdateWindowView> window_;
};

} // namespace karto
