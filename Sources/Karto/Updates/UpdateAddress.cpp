#include "Karto/Updates/UpdateAddress.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace karto {

namespace {

constexpr std::size_t maximumLength = 2'000;
constexpr std::string_view secure = "https://";
constexpr std::string_view plain = "http://";
constexpr std::array<std::string_view, 3> ownMachine{"localhost", "127.0.0.1", "[::1]"};

// Only what cannot be read in two ways.
bool isPlainText(std::string_view address) {
    return address.size() <= maximumLength && std::ranges::all_of(address, [](char character) {
               return character > ' ' && character <= '~' && character != '\\' && character != '"';
           });
}

std::string_view withoutPort(std::string_view authority) {
    const auto colon = authority.rfind(':');
    const bool hasPort = colon != std::string_view::npos &&
                         authority.find_first_not_of("0123456789", colon + 1) == std::string_view::npos;
    return hasPort ? authority.substr(0, colon) : authority;
}

// Host and port; empty where there is none, or a person's name before it.
std::string_view authority(std::string_view address, std::string_view scheme) {
    const auto rest = address.substr(scheme.size());
    const auto whole = rest.substr(0, rest.find_first_of("/?#"));
    return whole.contains('@') ? std::string_view() : whole;
}

} // namespace

bool isSafeUpdateAddress(std::string_view address) {
    if (!isPlainText(address)) {
        return false;
    }
    if (address.starts_with(secure)) {
        return !withoutPort(authority(address, secure)).empty();
    }
    return address.starts_with(plain) &&
           std::ranges::find(ownMachine, withoutPort(authority(address, plain))) != ownMachine.end();
}

} // namespace karto
