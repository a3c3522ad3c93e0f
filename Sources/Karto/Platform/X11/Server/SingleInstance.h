#pragma once
// One Karto a display: a second one would find every shortcut taken.

#include "Karto/Platform/X11/Server/Connection.h"

#include <expected>
#include <string>

namespace karto::x11 {

// Makes this program the display's Karto, for as long as the connection lasts. The error is a sentence for a
// person.
std::expected<void, std::string> claimDisplay(Connection& connection);

} // namespace karto::x11
