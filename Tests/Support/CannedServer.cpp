#include "Support/CannedServer.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>

namespace karto::testing {

namespace {

sockaddr* plain(sockaddr_in& address) {
    return reinterpret_cast<sockaddr*>(&address); // NOLINT(*-reinterpret-cast)
}

std::string readHead(int connection) {
    std::string head;
    std::array<char, 4'096> chunk{};
    // What speaks another language waits for an answer.
    while (!head.contains("\r\n\r\n") && (head.empty() || head.front() >= ' ')) {
        const auto length = ::recv(connection, chunk.data(), chunk.size(), 0);
        if (length <= 0) {
            return {};
        }
        head.append(chunk.data(), static_cast<std::size_t>(length));
    }
    return head;
}

} // namespace

CannedServer::CannedServer(Answer answer, std::uint16_t port)
    : answer_(std::move(answer))
    , listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    if (listener_ < 0) {
        throw std::runtime_error("no socket on this machine");
    }
    const int yes = 1;
    ::setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // A port that another test has comes free when that one ends.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    const auto binds = [&] { return ::bind(listener_, plain(address), sizeof address) == 0; };
    bool isBound = binds();
    while (!isBound && errno == EADDRINUSE && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        isBound = binds();
    }
    if (!isBound || ::listen(listener_, 8) != 0) {
        throw std::runtime_error("no server on this machine");
    }
    thread_ = std::thread([this] { serve(); });
}

CannedServer::~CannedServer() {
    ::shutdown(listener_, SHUT_RDWR);
    thread_.join();
    ::close(listener_);
}

std::string CannedServer::authority() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(listener_, plain(address), &size);
    return fmt::format("127.0.0.1:{}", ntohs(address.sin_port));
}

void CannedServer::serve() {
    for (int connection = 0; (connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;
         ::close(connection)) {
        if (const auto head = readHead(connection); !head.empty()) {
            ++requests_;
            const auto answer = answer_(head);
            ::send(connection, answer.data(), answer.size(), MSG_NOSIGNAL);
            ::shutdown(connection, SHUT_WR);
        }
    }
}

std::string okAnswer(const std::string& body) {
    return fmt::format("HTTP/1.1 200 OK\r\nContent-Length: {}\r\nConnection: close\r\n\r\n{}", body.size(),
                       body);
}

} // namespace karto::testing
