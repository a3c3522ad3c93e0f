#pragma once
// A settings window without a screen: what a person does to the window itself, and what became of it.

#include "Karto/Settings/SettingsWindow.h"

#include <memory>
#include <utility>

namespace karto::testing {

class MemorySettingsWindow {
public:
    static constexpr WindowHandle handle{77};

    bool isOpen = false;
    int timesBroughtToFront = 0;
    bool isColorPanelOpen = false;
    // Both of the window opened last.
    SettingsModel* model = nullptr;
    // To be copied for a call: each may destroy the window.
    SettingsWindow::Events events;

    std::unique_ptr<SettingsWindow> make(SettingsModel& shown, SettingsWindow::Events given) {
        model = &shown;
        events = std::move(given);
        return std::make_unique<Window>(*this);
    }

    MakeSettingsWindow maker() {
        return [this](SettingsModel& given, SettingsWindow::Events reports) {
            return make(given, std::move(reports));
        };
    }

    void close() const {
        const auto willClose = events.willClose;
        willClose();
    }

private:
    class Window final : public SettingsWindow {
    public:
        explicit Window(MemorySettingsWindow& state)
            : state_(state) {
            state_.isOpen = true;
        }

        Window(const Window&) = delete;
        Window(Window&&) = delete;
        Window& operator=(const Window&) = delete;
        Window& operator=(Window&&) = delete;

        ~Window() override { state_.isOpen = false; }

        void bringToFront() override { ++state_.timesBroughtToFront; }

        void closeColorPanel() override {
            if (std::exchange(state_.isColorPanelOpen, false)) {
                state_.events.colorPanelClosed();
            }
        }

        [[nodiscard]] WindowHandle handle() const override { return MemorySettingsWindow::handle; }

    private:
        MemorySettingsWindow& state_;
    };
};

} // namespace karto::testing
