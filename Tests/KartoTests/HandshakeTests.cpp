#include "Karto/Platform/X11/Server/Handshake.h"

#include "Karto/Platform/Descriptor.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <vector>

namespace karto::x11 {

namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;

constexpr std::chrono::milliseconds patience = 10s;

// Listens where the server of a display does that nobody uses. DISPLAY names it.
class FakeServer {
public:
    FakeServer() {
        for (int number = 7000; number < 7100; ++number) {
            sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
            const auto path = fmt::format("/tmp/.X11-unix/X{}", number);
            std::ranges::copy(path, std::begin(address.sun_path) + 1);
            const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + path.size());
            if (bind(listener_.number(), reinterpret_cast<const sockaddr*>(&address), length) == 0) {
                listen(listener_.number(), 0);
                setenv("DISPLAY", fmt::format(":{}", number).c_str(), 1);
                return;
            }
        }
        throw std::runtime_error("every display is in use");
    }

    // Takes one connection and says that, then nothing more.
    void answer(std::string_view bytes, bool hangsUp) {
        thread_ = std::jthread([this, bytes, hangsUp] {
            Descriptor client(accept(listener_.number(), nullptr, nullptr));
            if (client.number() < 0) {
                return;
            }
            std::array<char, 12> request{};
            recv(client.number(), request.data(), request.size(), MSG_WAITALL);
            send(client.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (!hangsUp) {
                clients_.push_back(std::move(client));
            }
        });
    }

private:
    Descriptor listener_{socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    std::vector<Descriptor> clients_;
    std::jthread thread_;
};

std::string problem(std::chrono::milliseconds bound) {
    const auto opened = connectToServer(bound);
    return opened ? "none" : opened.error();
}

} // namespace

TEST(Handshake, aServerThatDoesNotAnswerIsGivenUp) {
    const FakeServer server;
    // Nobody takes the connections; the second and third find no room to wait.
    for (int i = 0; i < 3; ++i) {
        EXPECT_THAT(problem(20ms), HasSubstr("does not answer"));
    }
}

TEST(Handshake, anAnswerThatIsNoneIsExplained) {
    using namespace std::string_view_literals;

    struct Case {
        std::string_view answer;
        bool hangsUp = false;
        std::chrono::milliseconds bound;
        std::string sentence;
    };

    for (const auto& [answer, hangsUp, bound, sentence] :
         {Case{.answer = "\1\0\13"sv, .bound = 200ms, .sentence = "does not answer"},
          Case{.answer = "\1\0\13\0\0\0\2\0half"sv, .bound = 200ms, .sentence = "does not answer"},
          Case{.answer = ""sv, .hangsUp = true, .bound = patience, .sentence = "cannot be reached"},
          Case{.answer = "\0\2\13\0\0\0\1\0No\0\0"sv, .bound = patience, .sentence = "cannot be reached"}}) {
        SCOPED_TRACE(sentence);
        FakeServer server;
        server.answer(answer, hangsUp);
        EXPECT_THAT(problem(bound), HasSubstr(sentence));
    }
}

} // namespace karto::x11
