#include "Karto/Platform/X11/Displays/MonitorReading.h"

#include "Karto/Platform/X11/Displays/DisplayNames.h"
#include "KartoCore/Utf8.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>
#include <utility>

namespace karto::x11 {

namespace {

Rect frameOf(const xcb_randr_monitor_info_t& monitor) {
    return {.x = double(monitor.x),
            .y = double(monitor.y),
            .width = double(monitor.width),
            .height = double(monitor.height)};
}

MonitorRequest requestMonitor(Connection& connection, const xcb_randr_monitor_info_t& monitor) {
    MonitorRequest request{.frame = frameOf(monitor),
                           .name = xcb_get_atom_name(connection.get(), monitor.name)};
    if (xcb_randr_monitor_info_outputs_length(&monitor) > 0) {
        request.edid = xcb_randr_get_output_property(
            connection.get(), *xcb_randr_monitor_info_outputs(&monitor), connection.atoms().edid,
            XCB_ATOM_INTEGER, 0, edidBlockBytes / 4, 0, 0);
    }
    return request;
}

Edid awaitEdid(Connection& connection, xcb_randr_get_output_property_cookie_t request, Deadline deadline) {
    const auto reply = connection.await<xcb_randr_get_output_property_reply_t>(request, deadline);
    if (!reply || reply->format != 8) {
        return {};
    }
    return readEdid(
        std::span(xcb_randr_get_output_property_data(reply.get()),
                  static_cast<std::size_t>(xcb_randr_get_output_property_data_length(reply.get()))));
}

// A monitor has the name of its output, unless a person has defined it.
std::string awaitOutput(Connection& connection, xcb_get_atom_name_cookie_t request, Deadline deadline) {
    const auto name = connection.await<xcb_get_atom_name_reply_t>(request, deadline);
    if (!name) {
        return {};
    }
    std::string text(xcb_get_atom_name_name(name.get()),
                     static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())));
    // No configuration could name it otherwise.
    while (const auto position = firstNonText(text)) {
        text[*position] = '?';
    }
    return text;
}

} // namespace

std::vector<MonitorRequest> requestMonitors(Connection& connection,
                                            const xcb_randr_get_monitors_reply_t& monitors) {
    std::vector<const xcb_randr_monitor_info_t*> found;
    for (auto next = xcb_randr_get_monitors_monitors_iterator(&monitors); next.rem > 0;
         xcb_randr_monitor_info_next(&next)) {
        found.push_back(next.data);
    }
    const auto isPrimary = [](const auto* monitor) { return monitor->primary != 0; };
    if (const auto primary = std::ranges::find_if(found, isPrimary); primary != found.end()) {
        std::rotate(found.begin(), primary, std::next(primary));
    }
    std::vector<MonitorRequest> requests;
    for (const auto* monitor : found) {
        if (std::ranges::find(requests, frameOf(*monitor), &MonitorRequest::frame) == requests.end()) {
            requests.push_back(requestMonitor(connection, *monitor));
        }
    }
    return requests;
}

std::vector<Monitor> awaitMonitors(Connection& connection, const std::vector<MonitorRequest>& requests,
                                   Deadline deadline) {
    std::vector<MonitorLabels> labels;
    for (const MonitorRequest& request : requests) {
        MonitorLabels label{.edid = {}, .output = awaitOutput(connection, request.name, deadline)};
        if (request.edid) {
            label.edid = awaitEdid(connection, *request.edid, deadline);
        }
        labels.push_back(std::move(label));
    }
    const auto names = displayNames(labels);
    std::vector<Monitor> monitors;
    monitors.reserve(requests.size());
    for (std::size_t i = 0; i < requests.size(); ++i) {
        monitors.push_back({.name = names[i], .frame = requests[i].frame});
    }
    return monitors;
}

} // namespace karto::x11
