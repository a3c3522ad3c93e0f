#pragma once
// What the window manager tells of the desktop in single values on the root window.

#include "Karto/Platform/X11/Server/Connection.h"

#include <cstdint>
#include <optional>

namespace karto::x11 {

// The first 32-bit value of a property; absent when the property is missing or the server does not answer.
std::optional<std::uint32_t> rootValue(Connection& connection, xcb_atom_t property, xcb_atom_t type);

} // namespace karto::x11
