#pragma once
// Finds, reads, moves, raises and lists the windows of other applications.
// Frames are global points, y down. A read that fails, or takes longer than 0.25 seconds, is absent.

#include "Karto/Platform/Accessibility.h"
#include "Karto/Platform/Registration.h"
#include "KartoCore/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace karto {

struct WindowSnapshot {
    WindowHandle element;
    // When it was listed.
    Rect frame;
    std::optional<std::string> appName;
    // Absent when missing or empty.
    std::optional<std::string> title;
    // The application's; null when it has none.
    std::shared_ptr<const Image> icon;
    std::int32_t pid = 0;

    // What a person is told its application is called.
    [[nodiscard]] std::string shownAppName() const { return appName.value_or("unknown application"); }

    bool operator==(const WindowSnapshot&) const = default;
};

class WindowControlling {
public:
    virtual ~WindowControlling() = default;

    // The frontmost application's focused window, else its first one.
    virtual std::optional<WindowHandle> focusedWindow() = 0;
    virtual std::optional<Rect> frame(WindowHandle window) = 0;
    // Asks only: read the frame back to learn what happened.
    virtual void setFrame(const Rect& frame, WindowHandle window) = 0;
    // True only when the window says so.
    virtual bool isFullscreen(WindowHandle window) = 0;
    // The ordinary windows that lie mostly on the display at that index, the frontmost application's first;
    // neither minimized nor full screen.
    virtual std::vector<WindowSnapshot> windows(std::size_t displayIndex,
                                                std::span<const Rect> displayFrames) = 0;
    // Brings the window to the front and its application with it.
    virtual void raise(const WindowSnapshot& window) = 0;
    // Calls back when the window is gone for good: its handle may denote another one from then on.
    [[nodiscard]] virtual Registration observeClosing(WindowHandle window,
                                                      std::function<void()> onClosed) = 0;
};

} // namespace karto
