#pragma once
// The window that the contestants move: an ordinary decorated client, watched together with its frame.

#include "XServer.h"

#include <optional>

namespace karto::bench {

class TargetWindow {
public:
    // Returns once the window manager has framed the window and made it the active one.
    explicit TargetWindow(const XServer& server);

    [[nodiscard]] const Extents& extents() const { return extents_; }

    // The last frame that the server told.
    [[nodiscard]] const Box& frame() const { return frame_; }

    // True when both the frame and the client have exactly the geometry that puts the frame there.
    [[nodiscard]] bool fits(const Box& zone) const;

    // The arrival of the first configuration after which the window fits; absent when none came in time.
    std::optional<Clock::time_point> waitUntilIn(const Box& zone, Clock::duration bound);

    // Returns once nothing has happened to the window for a while.
    void waitUntilQuiet();

private:
    void map();
    void waitForFrame();
    void take(const xcb_generic_event_t& event);

    const XServer& server_;
    xcb_window_t client_ = XCB_WINDOW_NONE;
    xcb_window_t frameWindow_ = XCB_WINDOW_NONE;
    Extents extents_;
    Box frame_;
    int clientWidth_ = 0;
    int clientHeight_ = 0;
};

} // namespace karto::bench
