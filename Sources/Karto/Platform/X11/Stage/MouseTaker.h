#pragma once
// The part of a window of the stage that the pointer meets: invisible, in front of what shows.

#include "Karto/Platform/PointerEvent.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Stage/PointerTrack.h"
#include "Karto/Platform/X11/Stage/StageWindow.h"
#include "KartoCore/Picture.h"

#include <xcb/xcb.h>

#include <optional>
#include <vector>

namespace karto::x11 {

class MouseTaker {
public:
    MouseTaker(Connection& connection, const PixelRect& area);

    [[nodiscard]] StageWindow& window() { return window_; }

    [[nodiscard]] xcb_window_t id() const { return window_.id(); }

    void place(const PixelRect& area);
    void setCursor(xcb_cursor_t cursor) const;
    void show();

    void hide() { window_.hide(); }

    // Whether the event was one of this window; `events` is then what is to be told.
    bool handle(const xcb_generic_event_t& event, ModifierFlags held, std::vector<PointerEvent>& events);

    [[nodiscard]] bool isMovementWaiting() const { return track_.isMovementWaiting(); }

    [[nodiscard]] std::vector<PointerEvent> takeMovement() { return track_.takeMovement(); }

    // Asks the server only when it has not told.
    [[nodiscard]] std::optional<Point> pointer();

private:
    // Absent when the server does not answer.
    [[nodiscard]] std::optional<PointerTrack::Whereabouts> ask() const;

    Connection& connection_;
    StageWindow window_;
    PointerTrack track_;
};

} // namespace karto::x11
