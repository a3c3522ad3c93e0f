#pragma once
// Making a window the active one.

#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <cstdint>

namespace karto::x11 {

// Asks the window manager, which knows the window, in the way that managers grant although the person has
// just been busy elsewhere.
void activate(Connection& connection, xcb_window_t window);

// The same for windows that the toolkit has just made or shown. A busy manager may take such a window in
// behind the others after it has been asked: it is asked again as long as the window that was active before
// still is and this one has not had the keyboard. A person who has gone back is left alone.
class ToolkitActivation {
public:
    // toolkit: the connection that the windows are made over. First the server carries out all that was asked
    // there, so that the manager has heard of the window.
    ToolkitActivation(Connection& connection, xcb_connection_t* toolkit, Scheduler& scheduler)
        : connection_(connection)
        , toolkit_(toolkit)
        , scheduler_(scheduler) {}

    void activate(xcb_window_t window);

private:
    struct Asking {
        Registration selection;
        Registration events;
        Registration again;
    };

    void ask(xcb_window_t window, std::uint32_t activeBefore, int attemptsLeft);

    Connection& connection_;
    xcb_connection_t* toolkit_;
    Scheduler& scheduler_;
    Asking asking_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
