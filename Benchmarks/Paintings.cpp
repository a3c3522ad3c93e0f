#include "Paintings.h"

#include <xcb/damage.h>

namespace karto::bench {

Paintings::Paintings(const XServer& server)
    : server_(server) {
    auto* const connection = server.connection();
    const auto* extension = xcb_get_extension_data(connection, &xcb_damage_id);
    eventType_ = static_cast<std::uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
    const x11::Reply<xcb_damage_query_version_reply_t> version{
        xcb_damage_query_version_reply(connection, xcb_damage_query_version(connection, 1, 1), nullptr)};
    xcb_damage_create(connection, xcb_generate_id(connection), server.root(),
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    server.sync();
}

std::vector<Stroke> Paintings::until(Clock::time_point deadline) const {
    std::vector<Stroke> strokes;
    while (add(deadline, strokes)) {}
    return strokes;
}

std::vector<Stroke> Paintings::untilQuietFor(Clock::duration time) const {
    std::vector<Stroke> strokes;
    while (add(Clock::now() + time, strokes)) {}
    return strokes;
}

bool Paintings::add(Clock::time_point deadline, std::vector<Stroke>& strokes) const {
    const auto event = server_.nextEvent(deadline);
    if (event && (event->response_type & 0x7F) == eventType_) {
        const auto& area = reinterpret_cast<const xcb_damage_notify_event_t&>(*event).area;
        strokes.push_back({.time = Clock::now(),
                           .area = {.x = area.x, .y = area.y, .width = area.width, .height = area.height}});
    }
    return event != nullptr;
}

} // namespace karto::bench
