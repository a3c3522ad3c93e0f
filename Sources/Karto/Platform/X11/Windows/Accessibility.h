#pragma once
// Windows and applications through EWMH and ICCCM.

#include "Karto/Platform/Accessibility.h"
#include "Karto/Platform/InstalledApplications.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/WindowManager.h"
#include "Karto/Platform/X11/Windows/ApplicationFaces.h"
#include "Karto/Platform/X11/Windows/WindowPlacer.h"
#include "Karto/Platform/X11/Windows/WindowReader.h"

#include <sys/types.h>
#include <xcb/xcb.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace karto::x11 {

// Why nothing can be done in a Wayland session.
TrustProblem waylandProblem();

// What the process knows of the session it runs in.
struct SessionFacts {
    pid_t ownProcess = 0;
    bool isWayland = false;
    // Opens the settings of the desktop.
    std::function<void()> openSettings;
};

class Accessibility final : public karto::Accessibility {
public:
    Accessibility(Connection& connection, WindowManager& manager, Scheduler& scheduler,
                  InstalledApplications& installed, SessionFacts session);

    bool isTrusted() override;
    bool requestTrust() override;
    std::optional<TrustProblem> trustProblem() override;
    void openSettings() override;

    std::optional<std::int32_t> frontmostApplication() override;
    std::vector<Application> runningApplications() override;
    std::optional<WindowHandle> focusedWindow(std::int32_t pid) override;
    std::optional<std::vector<WindowHandle>> windows(std::int32_t pid) override;
    std::shared_ptr<const Image> icon(std::int32_t pid) override;

    std::optional<Point> position(WindowHandle window) override;
    std::optional<Size> size(WindowHandle window) override;
    bool isPositionSettable(WindowHandle window) override;
    bool isSizeSettable(WindowHandle window) override;
    void setPosition(WindowHandle window, Point position) override;
    void setSize(WindowHandle window, Size size) override;

    std::optional<bool> isStandard(WindowHandle window) override;
    std::optional<bool> isMinimized(WindowHandle window) override;
    std::optional<bool> isFullscreen(WindowHandle window) override;
    std::optional<std::string> title(WindowHandle window) override;

    void raise(WindowHandle window) override;
    void activate(std::int32_t pid) override;

    Registration observeClosing(WindowHandle window, std::function<void()> onClosed) override;

private:
    void sendUnlessMoreFollows();

    Connection& connection_;
    WindowManager& manager_;
    SessionFacts session_;
    ApplicationFaces faces_;
    WindowPlacer placer_;
    WindowReader windows_;
    xcb_window_t lastRaised_ = XCB_WINDOW_NONE;
    Registration turnEnds_;
};

} // namespace karto::x11
