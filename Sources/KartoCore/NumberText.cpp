#include "KartoCore/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace karto {

namespace {

// Below, decimals with a fraction would be mostly zeros; from above on, doubles skip whole numbers.
constexpr double smallestPlain = 0.0001;
constexpr double smallestLarge = 0x1p54;

bool takesExponent(double value) {
    const double magnitude = std::abs(value);
    return magnitude >= smallestLarge || (magnitude < smallestPlain && magnitude > 0);
}

} // namespace

std::string shortestDecimal(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-inf" : "inf";
    }
    const auto format = takesExponent(value) ? std::chars_format::scientific : std::chars_format::fixed;
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.begin(), buffer.end(), value, format).ptr;
    std::string text(buffer.begin(), end);
    if (format == std::chars_format::fixed && !text.contains('.')) {
        text += ".0";
    }
    return text;
}

} // namespace karto
