#pragma once
// The settings window as its controller sees it.

#include "Karto/Platform/WindowHandle.h"

#include <functional>
#include <memory>

namespace karto {

class SettingsModel;

// Shown from its making on until it is destroyed.
class SettingsWindow {
public:
    // What the window reports. Each may destroy the window.
    struct Events {
        std::function<void()> willClose;
        // The keyboard goes to another window.
        std::function<void()> resignedKey;
        std::function<void()> colorPanelClosed;
        std::function<void()> revert;
    };

    virtual ~SettingsWindow() = default;

    // In front of all others, with the keyboard.
    virtual void bringToFront() = 0;
    // Nothing when it is closed; its closing is reported otherwise.
    virtual void closeColorPanel() = 0;

    [[nodiscard]] virtual WindowHandle handle() const = 0;
};

// Shows a window of the model in the middle of the screen and brings it to the front. The model outlives it.
using MakeSettingsWindow =
    std::function<std::unique_ptr<SettingsWindow>(SettingsModel& model, SettingsWindow::Events events)>;

} // namespace karto
