#pragma once
// The way to a display's server.

#include "Karto/Platform/Descriptor.h"

#include <chrono>
#include <cstdint>
#include <expected>
#include <string>

namespace karto::x11 {

using Deadline = std::chrono::steady_clock::time_point;

struct DisplayAddress {
    // Empty or "unix" for this machine.
    std::string host;
    int number = 0;
};

struct ServerSocket {
    Descriptor descriptor;
    // The server's, most significant byte first; empty when it runs on this machine.
    std::string internetAddress;
};

enum class SocketFailure : std::uint8_t {
    unreachable,
    // Nobody has taken the connection before the deadline.
    silent,
};

std::expected<ServerSocket, SocketFailure> connectSocket(const DisplayAddress& display, Deadline deadline);

} // namespace karto::x11
