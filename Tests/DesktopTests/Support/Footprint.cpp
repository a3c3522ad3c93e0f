#include "Support/Footprint.h"

#include "Support/ChildProcess.h"

#include <fmt/format.h>
#include <xcb/res.h>

#include <iterator>

namespace karto::desktop {

namespace {

constexpr std::uint64_t kilobyte = 1024;

// The connections that a process of this machine has to the server.
std::vector<std::uint32_t> clientsOf(const XClient& x, pid_t process) {
    const xcb_res_client_id_spec_t everyProcess{.client = 0, .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const Reply<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        x.connection(), xcb_res_query_client_ids(x.connection(), 1, &everyProcess), nullptr));
    std::vector<std::uint32_t> clients;
    for (auto id = xcb_res_query_client_ids_ids_iterator(reply.get()); id.rem > 0;
         xcb_res_client_id_value_next(&id)) {
        if (xcb_res_client_id_value_value_length(id.data) > 0 &&
            *xcb_res_client_id_value_value(id.data) == std::uint32_t(process)) {
            clients.push_back(id.data->spec.client);
        }
    }
    return clients;
}

long pixmapBytesOf(const XClient& x, std::uint32_t client) {
    const Reply<xcb_res_query_client_pixmap_bytes_reply_t> reply(xcb_res_query_client_pixmap_bytes_reply(
        x.connection(), xcb_res_query_client_pixmap_bytes(x.connection(), client), nullptr));
    return reply ? long(std::uint64_t(reply->bytes_overflow) << 32U | reply->bytes) : 0;
}

long residentKilobytes(pid_t process) {
    constexpr std::string_view key = "VmRSS:";
    const std::string status = contentsOf(fmt::format("/proc/{}/status", process));
    const std::size_t place = status.find(key);
    return place == std::string::npos ? 0 : std::stol(status.substr(place + key.size()));
}

} // namespace

long resourcesOf(const XClient& x, std::uint32_t firstIdentifier) {
    const Reply<xcb_res_query_client_resources_reply_t> reply(xcb_res_query_client_resources_reply(
        x.connection(), xcb_res_query_client_resources(x.connection(), firstIdentifier), nullptr));
    long sum = 0;
    for (auto type = xcb_res_query_client_resources_types_iterator(reply.get()); type.rem > 0;
         xcb_res_type_next(&type)) {
        sum += type.data->count;
    }
    return sum;
}

Footprint footprintOf(const XClient& x, pid_t process) {
    const std::filesystem::directory_iterator descriptors(fmt::format("/proc/{}/fd", process));
    Footprint footprint{.residentKilobytes = residentKilobytes(process),
                        .descriptors = std::distance(begin(descriptors), end(descriptors))};
    for (const auto client : clientsOf(x, process)) {
        footprint.serverResources += resourcesOf(x, client);
        footprint.pixmapKilobytes += pixmapBytesOf(x, client) / long(kilobyte);
    }
    return footprint;
}

} // namespace karto::desktop
