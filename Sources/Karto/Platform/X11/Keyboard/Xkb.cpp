#include "Karto/Platform/X11/Keyboard/Xkb.h"

namespace karto::x11 {

namespace {

constexpr std::uint16_t newKeyboardParts = XCB_XKB_NKN_DETAIL_KEYCODES | XCB_XKB_NKN_DETAIL_DEVICE_ID;
constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
// Whether keys repeat at all, which of them do, and how fast.
constexpr std::uint32_t repetitionParts = std::uint32_t{XCB_XKB_BOOL_CTRL_REPEAT_KEYS} |
                                          XCB_XKB_CONTROL_PER_KEY_REPEAT | XCB_XKB_CONTROL_CONTROLS_ENABLED;
constexpr std::uint16_t heldParts = XCB_XKB_STATE_PART_MODIFIER_BASE | XCB_XKB_STATE_PART_MODIFIER_LATCH;

} // namespace

std::optional<Xkb> Xkb::use(Connection& connection) {
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0) {
        return std::nullopt;
    }
    // The server takes the other requests once it has seen this one; the version it answers with tells
    // nothing.
    const auto announced =
        xcb_xkb_use_extension(connection.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    xcb_discard_reply(connection.get(), announced.sequence);
    return Xkb(connection.get(), extension->first_event);
}

void Xkb::detectRepetition() const {
    constexpr std::uint32_t flag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const auto request = xcb_xkb_per_client_flags(connection_, coreKeyboard, flag, flag, 0, 0, 0);
    xcb_discard_reply(connection_, request.sequence);
}

void Xkb::selectKeyboardChanges() const {
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = details.newKeyboardDetails = newKeyboardParts;
    details.affectCtrls = details.ctrlDetails = repetitionParts;
    select(XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY |
               XCB_XKB_EVENT_TYPE_CONTROLS_NOTIFY,
           details);
}

void Xkb::selectHeldModifiers() const { selectState(heldParts); }

void Xkb::selectState(std::uint16_t parts) const {
    xcb_xkb_select_events_details_t details{};
    details.affectState = wholeState;
    details.stateDetails = parts;
    select(XCB_XKB_EVENT_TYPE_STATE_NOTIFY, details);
}

void Xkb::tellState(xcb_window_t window, const xcb_xkb_get_state_reply_t& state) const {
    xcb_xkb_state_notify_event_t event{};
    event.response_type = static_cast<std::uint8_t>(firstEvent_);
    event.xkbType = XCB_XKB_STATE_NOTIFY;
    event.deviceID = state.deviceID;
    event.mods = state.mods;
    event.baseMods = state.baseMods;
    event.latchedMods = state.latchedMods;
    event.lockedMods = state.lockedMods;
    event.group = state.group;
    event.baseGroup = state.baseGroup;
    event.latchedGroup = state.latchedGroup;
    event.lockedGroup = state.lockedGroup;
    event.changed = wholeState;
    xcb_send_event(
        connection_, 0, window, XCB_EVENT_MASK_NO_EVENT,
        reinterpret_cast<const char*>(&event)); // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
}

void Xkb::select(std::uint16_t events, const xcb_xkb_select_events_details_t& details) const {
    // The parts of the map count for map events alone.
    xcb_xkb_select_events_aux(connection_, coreKeyboard, events, 0, 0, mapParts, mapParts, &details);
}

std::optional<int> Xkb::kind(const xcb_generic_event_t& event) const {
    if (eventCode(event) != firstEvent_) {
        return std::nullopt;
    }
    return eventAs<xcb_xkb_state_notify_event_t>(event).xkbType;
}

bool Xkb::isKeyboardChange(const xcb_generic_event_t& event) const {
    const auto ours = kind(event);
    return ours == XCB_XKB_NEW_KEYBOARD_NOTIFY || ours == XCB_XKB_MAP_NOTIFY ||
           ours == XCB_XKB_CONTROLS_NOTIFY ||
           (eventCode(event) == XCB_MAPPING_NOTIFY &&
            eventAs<xcb_mapping_notify_event_t>(event).request != XCB_MAPPING_POINTER);
}

const xcb_xkb_state_notify_event_t* Xkb::heldModifiers(const xcb_generic_event_t& event) const {
    return kind(event) == XCB_XKB_STATE_NOTIFY ? &eventAs<xcb_xkb_state_notify_event_t>(event) : nullptr;
}

} // namespace karto::x11
