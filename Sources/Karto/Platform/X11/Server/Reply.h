#pragma once
// What xcb hands out with malloc.

#include <xcb/xcb.h>

#include <cstdlib>
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

} // namespace karto::x11
