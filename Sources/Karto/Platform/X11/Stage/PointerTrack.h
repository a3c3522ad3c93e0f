#pragma once
// The pointer's course in one window of the server's, told as a person means it.
// While a button is down the server sends everything to the window where it went down, and tells of borders
// crossed meanwhile as well; those count again when the gesture has ended. Of movements the last one alone
// waits to be told, so that a slow hearer does not lag behind the pointer.

#include "Karto/Platform/PointerEvent.h"
#include "KartoCore/Geometry.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace karto::x11 {

class PointerTrack {
public:
    struct Whereabouts {
        // Absent while the window would not hear of the pointer.
        std::optional<Point> place;
    };

    // What is to be told now, in order. The event is one of the window's, whose size in pixels is given.
    [[nodiscard]] std::vector<PointerEvent> take(const xcb_generic_event_t& event, ModifierFlags held,
                                                 Size size);

    [[nodiscard]] bool isMovementWaiting() const { return movement_.has_value(); }

    // The same, once nothing else has arrived.
    [[nodiscard]] std::vector<PointerEvent> takeMovement();

    // Absent while nothing is known.
    [[nodiscard]] const std::optional<Whereabouts>& whereabouts() const { return whereabouts_; }

    void learn(const Whereabouts& whereabouts) { whereabouts_ = whereabouts; }

    // The window is shown anew, or elsewhere.
    void forget() { whereabouts_.reset(); }

private:
    void moved(bool isDown, Size size);
    void pressed();
    void released();
    // mode: why the server says so.
    void left(std::uint8_t mode);
    void hidden();

    void endGesture(PointerAction how);
    void leave();
    void tellMovement();
    void tell(PointerAction action);

    // The pointer and the modifiers at the last event.
    Point place_;
    ModifierFlags held_;
    bool isPressed_ = false;
    // Whether the pointer's coming was told, and its leaving was not.
    bool isInside_ = false;
    std::optional<PointerEvent> movement_;
    std::optional<Whereabouts> whereabouts_;
    // To be told.
    std::vector<PointerEvent> events_;
};

} // namespace karto::x11
