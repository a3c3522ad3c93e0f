#pragma once
// What a monitor says of itself.

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace karto::x11 {

// Of the first block, in which all of this stands.
inline constexpr std::uint32_t edidBlockBytes = 128;

// Tells monitors of one model apart, as far as their maker has seen to it: many have one of the two alone,
// and some the same in every piece.
struct MonitorSerial {
    std::uint32_t number = 0;
    std::string text;

    bool operator==(const MonitorSerial&) const = default;
};

struct Edid {
    // Absent when the monitor names none, as most panels of laptops.
    std::optional<std::string> productName;
    std::optional<MonitorSerial> serial;

    bool operator==(const Edid&) const = default;
};

// Nothing is known from bytes that are no EDID. The block's checksum is not asked for: a monitor with a wrong
// one has had it since it was made, and its name with it.
Edid readEdid(std::span<const std::uint8_t> bytes);

} // namespace karto::x11
