#include "Karto/Platform/X11/Displays/Edid.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace karto::x11 {

namespace {

constexpr std::size_t firstDescriptor = 54;
constexpr std::size_t descriptorSize = 18;
constexpr std::size_t descriptorCount = 4;
constexpr std::size_t textOffset = 5;
// A descriptor that holds a text starts with these bytes; the name's tag is the fourth.
constexpr std::array<std::uint8_t, textOffset> nameHeader{0x00, 0x00, 0x00, 0xFC, 0x00};

} // namespace

std::optional<std::string> productName(std::span<const std::uint8_t> edid) {
    if (edid.size() < edidBlockBytes) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < descriptorCount; ++i) {
        const auto descriptor = edid.subspan(firstDescriptor + i * descriptorSize, descriptorSize);
        if (!std::ranges::equal(descriptor.first(textOffset), nameHeader)) {
            continue;
        }
        std::string name;
        for (const auto byte : descriptor.subspan(textOffset)) {
            if (byte == '\n') {
                break;
            }
            // Plain ASCII by definition; anything else is a broken block and would not be valid UTF-8.
            name += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '?';
        }
        name.erase(name.find_last_not_of(' ') + 1);
        if (!name.empty()) {
            return name;
        }
    }
    return std::nullopt;
}

} // namespace karto::x11
