#pragma once
// What a monitor says of itself.

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace karto::x11 {

// Of the first block, in which the name stands.
inline constexpr std::uint32_t edidBlockBytes = 128;

// The product name in a monitor's EDID block; absent when it names none.
std::optional<std::string> productName(std::span<const std::uint8_t> edid);

} // namespace karto::x11
