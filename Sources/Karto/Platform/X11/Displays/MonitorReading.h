#pragma once
// The server's monitors with the names of their displays: requested in one flight, awaited with another.

#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/Extensions.h"
#include "KartoCore/Geometry.h"

#include <optional>
#include <string>
#include <vector>

namespace karto::x11 {

struct MonitorRequest {
    Rect frame;
    xcb_get_atom_name_cookie_t name{};
    // Absent for a monitor without outputs.
    std::optional<xcb_randr_get_output_property_cookie_t> edid = std::nullopt;
};

// The primary one first. Of monitors that show the same only the first is asked for.
std::vector<MonitorRequest> requestMonitors(Connection& connection,
                                            const xcb_randr_get_monitors_reply_t& monitors);

struct Monitor {
    std::string name;
    Rect frame;
};

std::vector<Monitor> awaitMonitors(Connection& connection, const std::vector<MonitorRequest>& requests,
                                   Deadline deadline);

} // namespace karto::x11
