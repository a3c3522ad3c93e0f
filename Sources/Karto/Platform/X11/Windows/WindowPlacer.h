#pragma once
// Brings windows into frames and finds out what became of it.
// What is asked of a window between two looks at it goes out as one request to the window manager. A
// maximized window first gives up that state; its frame is corrected as long as its decoration still changes.
// A window that moved, but not to where it was asked, is asked once more.

#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/WindowFacts.h"
#include "Karto/Platform/X11/Server/WindowManager.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/Picture.h"

#include <xcb/xcb.h>

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace karto::x11 {

// Where the client must lie, in pixels of the root, for the window's visible frame to fill `frame`, whose
// edges are rounded so that windows in adjacent zones meet.
PixelRect clientAreaFor(const Rect& frame, const WindowFacts& facts);

// The size that a window takes when asked for `area` by a manager that heeds the window's size hints.
PixelRect constrained(PixelRect area, const xcb_size_hints_t& hints);

class WindowPlacer {
public:
    WindowPlacer(Connection& connection, WindowManager& manager, Scheduler& scheduler);

    // Each asks for a part of a frame, visible and in global points. `now` is the window as last seen.
    void setOrigin(xcb_window_t window, Point origin, const WindowFacts& now);
    void setSize(xcb_window_t window, Size size, const WindowFacts& now);

    // Sends what was asked for and not sent yet.
    void send();

    // The window as it was when it was asked for a frame, if it has not been looked at since; null otherwise.
    [[nodiscard]] const WindowFacts* unsettled(xcb_window_t window) const;

    // Waits for the outcome of what a window was asked for, as long as it may still change and the deadline
    // allows, and returns the window as it is then; absent when it is gone.
    std::optional<WindowFacts> settle(xcb_window_t window, Deadline deadline);

private:
    struct Placement {
        Rect target;
        // The window that the last request was computed for.
        WindowFacts facts;
        bool isSent = false;
        bool isSettled = false;
        // It was there already when it was asked.
        bool fitted = false;
        bool wasMaximized = false;
        // It has been told to give up being maximized and has not yet.
        bool isRestoring = false;
        int corrections = 0;
        // It was right, and is looked at once more.
        bool isLastLook = false;
        Registration events;
        Registration recheck;
    };

    Placement& placement(xcb_window_t window, const WindowFacts& now);
    void send(xcb_window_t window, Placement& placement);
    void place(xcb_window_t window, Placement& placement, const WindowFacts& facts);
    bool advance(xcb_window_t window, Placement& placement, const WindowFacts& facts);
    // The news since the mark that may be of the window's frame, as soon as there are some; empty when none
    // comes before the deadline.
    std::vector<const xcb_generic_event_t*> awaitChange(xcb_window_t window, std::size_t mark,
                                                        Deadline deadline);
    // The window in the frame that it was asked for, if the changes are the news of just that.
    static std::optional<WindowFacts> toldToFit(const Placement& asked,
                                                std::span<const xcb_generic_event_t* const> changes);
    void recheckLater(xcb_window_t window, Placement& placement, std::chrono::milliseconds delay);
    void recheck(xcb_window_t window);
    void correct(xcb_window_t window, Placement& placement, const WindowFacts& facts);

    Connection& connection_;
    WindowManager& manager_;
    Scheduler& scheduler_;
    std::map<xcb_window_t, Placement> placements_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
