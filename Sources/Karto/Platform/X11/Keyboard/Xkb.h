#pragma once
// The keyboard extension of the X server, in use on the program's connection.
// Selections of different kinds of events leave one another alone, whoever makes them.

#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/Extensions.h"

#include <cstdint>
#include <optional>

namespace karto::x11 {

inline constexpr xcb_xkb_device_spec_t coreKeyboard = XCB_XKB_ID_USE_CORE_KBD;

class Xkb {
public:
    // Absent when the server lacks the extension.
    static std::optional<Xkb> use(Connection& connection);

    // A key that is held sends presses only, and one release in the end.
    void detectRepetition() const;

    void selectKeyboardChanges() const;
    void selectHeldModifiers() const;

    // Whether keys or modifiers may have moved, or the repetition of keys may be another.
    [[nodiscard]] bool isKeyboardChange(const xcb_generic_event_t& event) const;

    // The event as news of modifiers pressed or released; null for any other event.
    [[nodiscard]] const xcb_xkb_state_notify_event_t* heldModifiers(const xcb_generic_event_t& event) const;

private:
    Xkb(xcb_connection_t* connection, int firstEvent)
        : connection_(connection)
        , firstEvent_(firstEvent) {}

    void select(std::uint16_t events, const xcb_xkb_select_events_details_t& details) const;
    // The kind of an event of this extension.
    [[nodiscard]] std::optional<int> kind(const xcb_generic_event_t& event) const;

    xcb_connection_t* connection_;
    int firstEvent_;
};

} // namespace karto::x11
