#pragma once
// Other applications and their windows, as far as the desktop lets one read, move and raise them.
// Frames are what a person sees: the outer frame with the window manager's decoration, without invisible
// borders, in global points (X pixels), y down. Every call takes 0.25 seconds at most; a read that fails is
// absent.

#include "Karto/Platform/Registration.h"
#include "Karto/Platform/WindowHandle.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/Picture.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace karto {

struct Application {
    // The process identifier; a negative number stands for an application whose windows name no process.
    std::int32_t pid = 0;
    // Absent if the system gives none.
    std::optional<std::string> name;
    // An ordinary application with windows of its own, and not this program.
    bool isRegular = false;

    bool operator==(const Application&) const = default;
};

// Why a desktop is not trusted: as a clause for the log, and in sentences for a person.
struct TrustProblem {
    std::string cause;
    std::string explanation;
};

class Accessibility {
public:
    virtual ~Accessibility() = default;

    // Whether other applications' windows can be read and moved here, now.
    virtual bool isTrusted() = 0;
    // The same after giving a desktop that is still starting a few seconds.
    virtual bool requestTrust() = 0;
    // Absent when this desktop is trusted.
    virtual std::optional<TrustProblem> trustProblem() = 0;
    // Opens the place where a person can change that, as far as the desktop has one.
    virtual void openSettings() = 0;

    // Its process identifier.
    virtual std::optional<std::int32_t> frontmostApplication() = 0;
    // In the order in which they appeared.
    virtual std::vector<Application> runningApplications() = 0;

    virtual std::optional<WindowHandle> focusedWindow(std::int32_t pid) = 0;
    // The topmost first; absent when the list cannot be read.
    virtual std::optional<std::vector<WindowHandle>> windows(std::int32_t pid) = 0;
    virtual std::shared_ptr<const Image> icon(std::int32_t pid) = 0;

    virtual std::optional<Point> position(WindowHandle window) = 0;
    virtual std::optional<Size> size(WindowHandle window) = 0;
    virtual bool isPositionSettable(WindowHandle window) = 0;
    virtual bool isSizeSettable(WindowHandle window) = 0;
    // Requests, sent without waiting; the next read of the window waits for their outcome.
    virtual void setPosition(WindowHandle window, Point position) = 0;
    virtual void setSize(WindowHandle window, Size size) = 0;

    // An ordinary window of an application: no dialog, panel, menu or desktop, and on a desktop that is
    // shown.
    virtual std::optional<bool> isStandard(WindowHandle window) = 0;
    virtual std::optional<bool> isMinimized(WindowHandle window) = 0;
    virtual std::optional<bool> isFullscreen(WindowHandle window) = 0;
    virtual std::optional<std::string> title(WindowHandle window) = 0;

    virtual void raise(WindowHandle window) = 0;
    // Brings the application to the front; nothing when it has gone.
    virtual void activate(std::int32_t pid) = 0;

    // Calls back when the window is gone for good: its handle may denote another one from then on.
    [[nodiscard]] virtual Registration observeClosing(WindowHandle window,
                                                      std::function<void()> onClosed) = 0;
};

} // namespace karto
