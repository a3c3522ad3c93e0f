#pragma once
// What the pointer does in a window of the stage.

#include "Karto/Platform/ModifierEvents.h"
#include "KartoCore/Geometry.h"

#include <cstdint>

namespace karto {

enum class PointerAction : std::uint8_t {
    // It came into the window, or moved there.
    moved,
    // It is no longer there, or another window is in front of it.
    left,
    // The main button went down, which begins a gesture. Until its end the window hears of the pointer
    // wherever that goes, whatever becomes of the window's frame, picture and order.
    pressed,
    // It moved with the button down.
    dragged,
    // The button came up; that is the end of the gesture, and left follows when it ended elsewhere.
    released,
    // The end of a gesture that was taken away: the window was hidden or no longer takes the mouse, or the
    // button came up unheard.
    cancelled,
};

struct PointerEvent {
    PointerAction action = PointerAction::moved;
    // Pixels from the window's top left corner; beyond its edges in a gesture, and when the pointer has left.
    Point place;
    ModifierFlags held;

    bool operator==(const PointerEvent&) const = default;
};

// Like the desktop's own.
enum class Cursor : std::uint8_t { arrow, resizeLeftRight, resizeUpDown };

} // namespace karto
