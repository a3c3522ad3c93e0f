#pragma once
// Windows and applications through EWMH and ICCCM.
// What is read of a window while one event is handled is read once and together, and the active window is
// known before a key is pressed.

#include "Karto/Platform/Accessibility.h"
#include "Karto/Platform/InstalledApplications.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/WindowFacts.h"
#include "Karto/Platform/X11/Server/WindowManager.h"
#include "Karto/Platform/X11/Windows/ApplicationFaces.h"
#include "Karto/Platform/X11/Windows/Client.h"
#include "Karto/Platform/X11/Windows/WindowPlacer.h"

#include <sys/types.h>
#include <xcb/xcb.h>

#include <functional>
#include <map>
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
    // The active window, kept current by the events that tell of its changes: between a pressed key and the
    // request to move it nothing needs to be asked.
    struct Active {
        xcb_window_t window = XCB_WINDOW_NONE;
        // Whether `window` holds, NONE included.
        bool isKnown = false;
        // Absent from a change on until it is looked at again.
        std::optional<WindowFacts> facts;
        Registration events;
        // The frame that has to be measured, if it has one such.
        xcb_window_t frame = XCB_WINDOW_NONE;
        Registration frameEvents;
        Registration reading;
    };

    // The window that was active before none was.
    struct Left {
        xcb_window_t window = XCB_WINDOW_NONE;
        Registration events;
    };

    void noteEvent(const xcb_generic_event_t& event);
    void readActive();
    void knowActive(const WindowFacts& facts);
    // Where the keyboard follows the pointer, a window that a command moves away from the pointer loses it to
    // none. It still is the one that a person means, as long as it is seen and nothing lies on it.
    std::optional<xcb_window_t> leftWindow();
    bool isSeen(const WindowFacts& facts);
    // On the virtual desktop at hand.
    bool isHere(const WindowFacts& facts);

    std::optional<WindowFacts> facts(xcb_window_t window);
    std::optional<WindowFacts> lastSeen(xcb_window_t window);
    void sendUnlessMoreFollows();
    std::optional<xcb_window_t> activeWindow();
    std::optional<std::uint32_t> currentDesktop();
    // The windows that the manager lists under that name, except desktops and docks.
    std::vector<Client> clients(xcb_atom_t list);
    std::vector<Client> clientsOf(std::int32_t pid);
    [[nodiscard]] bool isOrdinary(const WindowFacts& facts) const;
    void remember(xcb_window_t window, const WindowFacts& facts);

    Connection& connection_;
    WindowManager& manager_;
    Scheduler& scheduler_;
    SessionFacts session_;
    ApplicationFaces faces_;
    WindowPlacer placer_;
    // What was read while the event at hand is handled.
    std::map<xcb_window_t, WindowFacts> seen_;
    std::optional<std::uint32_t> seenDesktop_;
    Active active_;
    Left left_;
    xcb_window_t lastRaised_ = XCB_WINDOW_NONE;
    Registration events_;
    Registration turnEnds_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
