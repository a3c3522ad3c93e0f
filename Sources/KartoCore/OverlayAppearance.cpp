#include "KartoCore/OverlayAppearance.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace karto {

namespace {

bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

double channel(std::string_view digits) {
    std::uint8_t byte = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    return byte / 255.0;
}

long byte(double channel) { return std::lround(channel * 255); }

} // namespace

std::optional<RGBColor> RGBColor::fromHex(std::string_view hex) {
    if (hex.size() != 7 || hex.front() != '#' || !std::ranges::all_of(hex.substr(1), isHexDigit)) {
        return std::nullopt;
    }
    return RGBColor{.red = channel(hex.substr(1, 2)),
                    .green = channel(hex.substr(3, 2)),
                    .blue = channel(hex.substr(5, 2))};
}

std::string RGBColor::hex() const {
    return fmt::format("#{:02X}{:02X}{:02X}", byte(red), byte(green), byte(blue));
}

} // namespace karto
