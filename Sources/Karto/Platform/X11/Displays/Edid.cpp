#include "Karto/Platform/X11/Displays/Edid.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace karto::x11 {

namespace {

constexpr std::array<std::uint8_t, 8> blockHeader{0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
constexpr std::size_t serialNumber = 12;
constexpr std::size_t firstDescriptor = 54;
constexpr std::size_t descriptorSize = 18;
constexpr std::size_t descriptorCount = 4;
constexpr std::size_t textOffset = 5;

enum class Tag : std::uint8_t { productName = 0xFC, serial = 0xFF };

// The first text of that kind that says something.
std::optional<std::string> textOf(std::span<const std::uint8_t> block, Tag tag) {
    // Anything else describes a video mode.
    const std::array<std::uint8_t, textOffset> header{0x00, 0x00, 0x00, static_cast<std::uint8_t>(tag), 0x00};
    for (std::size_t i = 0; i < descriptorCount; ++i) {
        const auto descriptor = block.subspan(firstDescriptor + i * descriptorSize, descriptorSize);
        if (!std::ranges::equal(descriptor.first(textOffset), header)) {
            continue;
        }
        std::string text;
        for (const auto byte : descriptor.subspan(textOffset)) {
            // The second one is against the rules, but some makers fill up with it.
            if (byte == '\n' || byte == 0) {
                break;
            }
            // Plain ASCII by definition; anything else is a broken block and would not be valid UTF-8.
            text += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '?';
        }
        text.erase(text.find_last_not_of(' ') + 1);
        if (!text.empty()) {
            return text;
        }
    }
    return std::nullopt;
}

} // namespace

Edid readEdid(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < edidBlockBytes || !std::ranges::equal(bytes.first(blockHeader.size()), blockHeader)) {
        return {};
    }
    MonitorSerial serial{.text = textOf(bytes, Tag::serial).value_or("")};
    // The lowest byte first.
    for (std::size_t i = sizeof serial.number; i-- > 0;) {
        serial.number = serial.number << 8U | bytes[serialNumber + i];
    }
    Edid edid{.productName = textOf(bytes, Tag::productName), .serial = std::nullopt};
    if (serial != MonitorSerial()) {
        edid.serial = std::move(serial);
    }
    return edid;
}

} // namespace karto::x11
