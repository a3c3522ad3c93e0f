#pragma once
// The active window, kept current by the events that tell of its changes: between a pressed key and the
// request to move it nothing needs to be asked.

#include "Karto/Platform/Registration.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/WindowFacts.h"

#include <xcb/xcb.h>

#include <optional>

namespace karto::x11 {

class ActiveWindow {
public:
    ActiveWindow(Connection& connection, Scheduler& scheduler);

    // NONE when no window is active.
    [[nodiscard]] xcb_window_t current();

    // The window that was active before none was; NONE while one is, and when that one is gone.
    [[nodiscard]] xcb_window_t left() const { return left_.window; }

    // What the events tell of a window without asking; absent from a change that they do not tell in full
    // until the window is read again, for every window but the active one, and while no event is handled.
    [[nodiscard]] std::optional<WindowFacts> known(xcb_window_t window) const;
    // Takes over what was read of a window, if it is the active one.
    void learn(xcb_window_t window, const WindowFacts& facts);

    // What is known may be about to change.
    void forget() { active_.facts.reset(); }

private:
    struct Active {
        xcb_window_t window = XCB_WINDOW_NONE;
        // Whether `window` holds, NONE included.
        bool isKnown = false;
        std::optional<WindowFacts> facts;
        Registration events;
        // The frame that has to be measured, if it has one such.
        xcb_window_t frame = XCB_WINDOW_NONE;
        Registration frameEvents;
        Registration reading;
    };

    struct Left {
        xcb_window_t window = XCB_WINDOW_NONE;
        Registration events;
    };

    void noteEvent(const xcb_generic_event_t& event);
    void read();
    void readFacts();

    Connection& connection_;
    Scheduler& scheduler_;
    Active active_;
    Left left_;
    Registration events_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
