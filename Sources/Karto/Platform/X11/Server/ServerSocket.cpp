#include "Karto/Platform/X11/Server/ServerSocket.h"

#include <fmt/format.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace karto::x11 {

namespace {

constexpr int firstPort = 6000;

struct Address {
    sockaddr_storage storage{};
    socklen_t length = 0;

    [[nodiscard]] const sockaddr* get() const {
        return reinterpret_cast<const sockaddr*>( // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
            &storage);
    }
};

Address localAddress(std::string_view path) {
    sockaddr_un local{.sun_family = AF_UNIX, .sun_path = {}};
    const auto length = std::min(path.size(), sizeof local.sun_path - 1);
    std::memcpy(static_cast<char*>(local.sun_path), path.data(), length);
    Address address{.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length)};
    std::memcpy(&address.storage, &local, sizeof local);
    return address;
}

std::vector<Address> internetAddresses(const std::string& host, int displayNumber) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const auto port = std::to_string(firstPort + displayNumber);
    if (getaddrinfo(host.c_str(), port.c_str(), &hints, &found) != 0) {
        return {};
    }
    std::vector<Address> addresses;
    for (const addrinfo* each = found; each != nullptr; each = each->ai_next) {
        auto& address = addresses.emplace_back(Address{.length = each->ai_addrlen});
        std::memcpy(&address.storage, each->ai_addr, each->ai_addrlen);
    }
    freeaddrinfo(found);
    return addresses;
}

// The name apart from the file is there even where the file is not.
std::vector<Address> localAddresses(int displayNumber) {
    const auto path = fmt::format("/tmp/.X11-unix/X{}", displayNumber);
    return {localAddress('\0' + path), localAddress(path)};
}

// Empty for this machine.
std::string internetAddressOf(const Address& address) {
    const auto field = [&address](std::size_t offset, std::size_t size) {
        std::string bytes(size, '\0');
        std::memcpy(bytes.data(), std::as_bytes(std::span(&address.storage, 1)).data() + offset, size);
        return bytes;
    };
    constexpr std::string_view loopback{"\x7F\0\0\1", sizeof(in_addr)};
    constexpr std::string_view loopback6{"\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\1", sizeof(in6_addr)};
    std::string bytes;
    if (address.storage.ss_family == AF_INET) {
        bytes = field(offsetof(sockaddr_in, sin_addr), sizeof(in_addr));
    } else if (address.storage.ss_family == AF_INET6) {
        bytes = field(offsetof(sockaddr_in6, sin6_addr), sizeof(in6_addr));
    }
    return bytes == loopback || bytes == loopback6 ? "" : bytes;
}

// Makes a connection attempt end at the deadline.
void limit(const Descriptor& socket, Deadline deadline) {
    using std::chrono::microseconds;
    // None at all would stand for no limit.
    const auto left = std::max(std::chrono::ceil<microseconds>(deadline - std::chrono::steady_clock::now()),
                               microseconds(1));
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    const timeval limit{.tv_sec = seconds.count(), .tv_usec = (left - seconds).count()};
    setsockopt(socket.number(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
}

std::expected<ServerSocket, SocketFailure> connectTo(std::span<const Address> addresses, Deadline deadline) {
    for (const auto& address : addresses) {
        Descriptor socket(::socket(address.storage.ss_family, SOCK_STREAM | SOCK_CLOEXEC, 0));
        limit(socket, deadline);
        if (connect(socket.number(), address.get(), address.length) == 0) {
            return ServerSocket{.descriptor = std::move(socket),
                                .internetAddress = internetAddressOf(address)};
        }
        if (errno == EAGAIN || errno == EINPROGRESS) {
            return std::unexpected(SocketFailure::silent);
        }
    }
    return std::unexpected(SocketFailure::unreachable);
}

} // namespace

std::expected<ServerSocket, SocketFailure> connectSocket(const DisplayAddress& display, Deadline deadline) {
    const bool isAnywhere = display.host.empty();
    if (isAnywhere || display.host == "unix") {
        auto local = connectTo(localAddresses(display.number), deadline);
        if (local || local.error() == SocketFailure::silent || !isAnywhere) {
            return local;
        }
    }
    return connectTo(internetAddresses(isAnywhere ? "localhost" : display.host, display.number), deadline);
}

} // namespace karto::x11
