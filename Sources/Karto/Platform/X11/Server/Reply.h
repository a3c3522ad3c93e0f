#pragma once
// What xcb hands out with malloc.

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <memory>

namespace karto::x11 {

struct Free {
    void operator()(void* memory) const { std::free(memory); } // NOLINT(cppcoreguidelines-no-malloc)
};

template<typename Content>
using Reply = std::unique_ptr<Content, Free>;

using Event = Reply<xcb_generic_event_t>;

// The code of an event, without the mark of events that another client sent.
inline int eventCode(const xcb_generic_event_t& event) { return event.response_type & 0x7F; }

inline bool isSentByClient(const xcb_generic_event_t& event) { return (event.response_type & 0x80) != 0; }

// An event seen as its own type, which its code names.
template<typename Specific>
const Specific& eventAs(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Specific&>(event); // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
}

// Whether the event tells that one of these properties of the window has changed.
inline bool changesProperty(const xcb_generic_event_t& event, xcb_window_t window,
                            std::initializer_list<xcb_atom_t> properties) {
    if (eventCode(event) != XCB_PROPERTY_NOTIFY) {
        return false;
    }
    const auto& change = eventAs<xcb_property_notify_event_t>(event);
    return change.window == window && std::ranges::find(properties, change.atom) != properties.end();
}

} // namespace karto::x11
