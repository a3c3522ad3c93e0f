#include "Karto/Platform/X11/Server/Handshake.h"

#include "Karto/Platform/X11/Server/Reply.h"
#include "Karto/Platform/X11/Server/ServerSocket.h"

#include <X11/Xauth.h>
#include <fmt/format.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <stop_token>
#include <string_view>
#include <thread>
#include <utility>

namespace karto::x11 {

namespace {

struct Authorization {
    std::string protocol = "MIT-MAGIC-COOKIE-1";
    // Empty when the person's authority file holds nothing for the server.
    std::string cookie;
};

unsigned short lengthOf(std::string_view text) { return static_cast<unsigned short>(text.size()); }

Authorization authorizationFor(const ServerSocket& server, int displayNumber) {
    auto address = server.internetAddress;
    unsigned short family = address.size() == 4 ? XCB_FAMILY_INTERNET : XCB_FAMILY_INTERNET_6;
    if (address.empty()) {
        // Servers of this machine stand under its name.
        family = FamilyLocal;
        address = hostName();
    }
    const auto number = std::to_string(displayNumber);
    Authorization result;
    auto* protocol = result.protocol.data();
    const int protocolLength = lengthOf(result.protocol);
    Xauth* const entry = XauGetBestAuthByAddr(family, lengthOf(address), address.data(), lengthOf(number),
                                              number.data(), 1, &protocol, &protocolLength);
    if (entry != nullptr) {
        result.cookie.assign(entry->data, entry->data_length);
        XauDisposeAuth(entry);
    }
    return result;
}

// Hangs up at the deadline, unless it is gone by then. A thread, because xcb waits without one.
class Watchdog {
public:
    Watchdog(int socket, Deadline deadline)
        : thread_([socket, deadline](const std::stop_token& stop) {
            std::mutex mutex;
            std::unique_lock lock(mutex);
            std::condition_variable_any().wait_until(lock, stop, deadline, [] { return false; });
            if (!stop.stop_requested()) {
                shutdown(socket, SHUT_RDWR);
            }
        }) {}

private:
    std::jthread thread_;
};

// xcb owns the socket from here on.
std::unique_ptr<xcb_connection_t, Disconnect> shakeHands(ServerSocket server, Authorization authorization,
                                                         Deadline deadline) {
    xcb_auth_info_t info{.namelen = lengthOf(authorization.protocol),
                         .name = authorization.protocol.data(),
                         .datalen = lengthOf(authorization.cookie),
                         .data = authorization.cookie.data()};
    const int socket = server.descriptor.release();
    const Watchdog watchdog(socket, deadline);
    return std::unique_ptr<xcb_connection_t, Disconnect>(
        xcb_connect_to_fd(socket, authorization.cookie.empty() ? nullptr : &info));
}

} // namespace

std::string hostName() {
    std::array<char, HOST_NAME_MAX + 1> name{};
    gethostname(name.data(), name.size() - 1);
    return name.data();
}

std::string displayName() {
    const char* display = std::getenv("DISPLAY"); // NOLINT(concurrency-mt-unsafe)
    return display == nullptr ? "" : display;
}

std::string sentenceOfSilence() { return fmt::format("the X display \"{}\" does not answer", displayName()); }

std::expected<OpenConnection, std::string> connectToServer(std::chrono::milliseconds bound) {
    const auto name = displayName();
    if (name.empty()) {
        return std::unexpected("no X display is named (DISPLAY is not set)");
    }
    OpenConnection result;
    DisplayAddress display;
    char* host = nullptr;
    if (xcb_parse_display(name.c_str(), &host, &display.number, &result.screenNumber) == 0) {
        return std::unexpected(fmt::format("\"{}\" does not name an X display", name));
    }
    display.host = Reply<char>(host).get();

    const auto deadline = std::chrono::steady_clock::now() + bound;
    auto server = connectSocket(display, deadline);
    bool isSilent = !server && server.error() == SocketFailure::silent;
    if (server) {
        auto authorization = authorizationFor(*server, display.number);
        result.connection = shakeHands(*std::move(server), std::move(authorization), deadline);
        if (xcb_connection_has_error(result.connection.get()) == 0) {
            return result;
        }
        isSilent = std::chrono::steady_clock::now() >= deadline;
    }
    return std::unexpected(isSilent ? sentenceOfSilence()
                                    : fmt::format("the X display \"{}\" cannot be reached", name));
}

} // namespace karto::x11
