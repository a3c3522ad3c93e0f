#pragma once
// System calls on files as the program makes them: interruptions are not its callers' business, and errors
// are clauses in English, whatever the locale.

#include "Karto/Platform/Descriptor.h"

#include <cerrno>
#include <string>
#include <string_view>

namespace karto::posix {

// What an error number means.
std::string describe(int errorNumber = errno);

// Repeats a system call for as long as a signal interrupts it.
template<typename Call>
auto uninterrupted(const Call& call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

// False with the error number set.
bool writeAll(const Descriptor& file, std::string_view bytes);

} // namespace karto::posix
