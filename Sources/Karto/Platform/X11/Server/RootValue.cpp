#include "Karto/Platform/X11/Server/RootValue.h"

namespace karto::x11 {

std::optional<std::uint32_t> rootValue(Connection& connection, xcb_atom_t property, xcb_atom_t type) {
    const auto reply = connection.await<xcb_get_property_reply_t>(
        requestProperty(connection, connection.root(), property, type, 1), deadlineFromNow());
    const auto value = words(reply.get());
    return value.empty() ? std::nullopt : std::optional(value[0]);
}

} // namespace karto::x11
