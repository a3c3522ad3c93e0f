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

    // The extension on another connection of this process, which has announced itself there.
    [[nodiscard]] Xkb on(xcb_connection_t* connection) const { return {connection, firstEvent_}; }

    void selectKeyboardChanges() const;
    void selectHeldModifiers() const;
    // All changes of the keyboard's state that concern these parts of it, and no others.
    void selectState(std::uint16_t parts) const;

    static constexpr std::uint16_t wholeState = 0x3FFF;
    // What stays when all keys are released.
    static constexpr std::uint16_t lockedState =
        XCB_XKB_STATE_PART_MODIFIER_LOCK | XCB_XKB_STATE_PART_GROUP_STATE | XCB_XKB_STATE_PART_GROUP_LOCK;

    // Tells the client that made the window how the keyboard stands, as the server would.
    void tellState(xcb_window_t window, const xcb_xkb_get_state_reply_t& state) const;

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
