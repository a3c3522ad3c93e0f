#pragma once
// Reads windows and the lists of them. What is read while one event is handled is read once and together; of
// a window that was asked for a frame, the outcome is awaited first.

#include "Karto/Platform/Registration.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/WindowFacts.h"
#include "Karto/Platform/X11/Server/WindowManager.h"
#include "Karto/Platform/X11/Windows/ActiveWindow.h"
#include "Karto/Platform/X11/Windows/Client.h"
#include "Karto/Platform/X11/Windows/WindowPlacer.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace karto::x11 {

class WindowReader {
public:
    WindowReader(Connection& connection, WindowManager& manager, Scheduler& scheduler, WindowPlacer& placer);

    // Absent when the window is gone, or does not answer in time.
    [[nodiscard]] std::optional<WindowFacts> facts(xcb_window_t window);
    // The same without waiting for the outcome of what it was asked for.
    [[nodiscard]] std::optional<WindowFacts> lastSeen(xcb_window_t window);

    // The window that a person means; absent when there is none.
    [[nodiscard]] std::optional<xcb_window_t> activeWindow();

    // What was known of the active window may be about to change.
    void forgetActive() { active_.forget(); }

    // The windows that the manager lists under that name, except desktops and docks.
    [[nodiscard]] std::vector<Client> clients(xcb_atom_t list);
    // Those of an application, the topmost first.
    [[nodiscard]] std::vector<Client> clientsOf(std::int32_t pid);

    // Neither a desktop nor a dock.
    [[nodiscard]] bool isOrdinary(const WindowFacts& facts) const;
    // On the virtual desktop at hand.
    [[nodiscard]] bool isHere(const WindowFacts& facts);

private:
    // Where the keyboard follows the pointer, a window that a command moves away from the pointer loses it to
    // none. It still is the one that a person means, as long as it is seen and nothing lies on it.
    std::optional<xcb_window_t> leftWindow();
    bool isSeen(const WindowFacts& facts);
    std::optional<std::uint32_t> currentDesktop();
    void remember(xcb_window_t window, const WindowFacts& facts);

    Connection& connection_;
    WindowManager& manager_;
    WindowPlacer& placer_;
    ActiveWindow active_;
    // What was read while the event at hand is handled.
    std::map<xcb_window_t, WindowFacts> seen_;
    std::optional<std::uint32_t> seenDesktop_;
    Registration turnEnds_;
};

} // namespace karto::x11
