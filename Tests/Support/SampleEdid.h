#pragma once
// Descriptions of displays as monitors carry them, one block of bytes.

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

namespace karto::testing {

enum class EdidTag : std::uint8_t {
    unused = 0x10,
    productName = 0xFC,
    range = 0xFD,
    text = 0xFE,
    serial = 0xFF
};

struct EdidText {
    EdidTag tag = EdidTag::productName;
    // Filled up with blanks after a line feed when it is shorter than its thirteen bytes.
    std::string text;
};

// The bytes that a display of that piece number describes itself with; at most four texts fit in.
inline std::array<std::uint8_t, 128> sampleEdid(std::uint32_t serialNumber, std::vector<EdidText> texts) {
    std::array<std::uint8_t, 128> edid{0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x2C, 0x2F};
    for (std::size_t i = 0; i < sizeof serialNumber; ++i) {
        edid.at(12 + i) = std::uint8_t(serialNumber >> 8 * i);
    }
    edid[18] = 1;
    edid[19] = 3;
    constexpr std::array<std::uint8_t, 11> gammaAndPrimaries{0x78, 0x0A, 0xEE, 0x91, 0xA3, 0x54,
                                                             0x4C, 0x99, 0x26, 0x0F, 0x50};
    std::ranges::copy(gammaAndPrimaries, edid.begin() + 23);
    edid[34] = 0x54;
    constexpr std::size_t firstDescriptor = 54;
    constexpr std::size_t descriptorSize = 18;
    constexpr std::size_t textSize = 13;
    texts.resize(4, {.tag = EdidTag::unused, .text = {}});
    for (std::size_t i = 0; i < texts.size(); ++i) {
        std::string text = texts[i].text.substr(0, textSize);
        if (text.size() < textSize && texts[i].tag != EdidTag::unused) {
            text += '\n';
            text.resize(textSize, ' ');
        }
        const auto start = edid.begin() + firstDescriptor + i * descriptorSize;
        start[3] = std::uint8_t(texts[i].tag);
        std::ranges::copy(text, start + 5);
    }
    edid.back() = std::uint8_t(-std::accumulate(edid.begin(), edid.end() - 1, 0));
    return edid;
}

} // namespace karto::testing
