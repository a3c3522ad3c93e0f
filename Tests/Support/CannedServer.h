#pragma once
// A server on this machine that gives each request for a path the same bytes, whatever they are, and hangs
// up.

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>

namespace karto::testing {

class CannedServer {
public:
    // Gets a request's head and returns what is sent back, status line included.
    using Answer = std::function<std::string(const std::string& head)>;

    // port: 0 for any that is free. The answer is asked for on a thread of the server's own.
    explicit CannedServer(Answer answer, std::uint16_t port = 0);
    CannedServer(const CannedServer&) = delete;
    CannedServer& operator=(const CannedServer&) = delete;
    CannedServer(CannedServer&&) = delete;
    CannedServer& operator=(CannedServer&&) = delete;
    ~CannedServer();

    // "127.0.0.1:PORT"
    [[nodiscard]] std::string authority() const;

    [[nodiscard]] int requests() const { return requests_; }

private:
    void serve();

    Answer answer_;
    int listener_;
    std::atomic<int> requests_ = 0;
    std::thread thread_;
};

// A whole answer of status 200.
std::string okAnswer(const std::string& body);

} // namespace karto::testing
