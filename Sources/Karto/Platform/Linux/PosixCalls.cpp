#include "Karto/Platform/Linux/PosixCalls.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>

namespace karto::posix {

std::string describe(int errorNumber) {
    const char* const description = ::strerrordesc_np(errorNumber);
    if (description == nullptr) {
        return fmt::format("error {}", errorNumber);
    }
    std::string message = description;
    // They are ASCII and begin with a capital.
    if (message.front() >= 'A' && message.front() <= 'Z') {
        message.front() = static_cast<char>(message.front() - 'A' + 'a');
    }
    return message;
}

bool writeAll(const Descriptor& file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto written =
            uninterrupted([&] { return ::write(file.number(), bytes.data(), bytes.size()); });
        if (written < 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace karto::posix
