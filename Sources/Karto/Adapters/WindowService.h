#pragma once
// Other applications' windows through the desktop's accessibility.

#include "Karto/Adapters/WindowControlling.h"
#include "Karto/Platform/Accessibility.h"

namespace karto {

class WindowService final : public WindowControlling {
public:
    explicit WindowService(Accessibility& accessibility);

    // Whether windows can be read and moved on this desktop, now.
    [[nodiscard]] bool isTrusted() const;
    // The same after giving a desktop that is still starting a few seconds.
    bool requestTrust();
    // Why they cannot, one sentence; absent when they can.
    [[nodiscard]] std::optional<TrustProblem> trustProblem() const;
    // Opens the place where a person can change that, as far as the desktop has one.
    void openAccessibilitySettings();

    std::optional<WindowHandle> focusedWindow() override;
    std::optional<Rect> frame(WindowHandle window) override;
    void setFrame(const Rect& frame, WindowHandle window) override;
    bool isFullscreen(WindowHandle window) override;
    std::vector<WindowSnapshot> windows(std::size_t displayIndex,
                                        std::span<const Rect> displayFrames) override;
    void raise(const WindowSnapshot& window) override;
    Registration observeClosing(WindowHandle window, std::function<void()> onClosed) override;

private:
    // Regular applications, the frontmost first.
    std::vector<Application> regularApplications();
    bool isOrdinary(WindowHandle window);

    Accessibility& accessibility_;
};

} // namespace karto
