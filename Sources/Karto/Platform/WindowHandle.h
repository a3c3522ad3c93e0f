#pragma once

#include <compare>
#include <cstdint>

namespace karto {

// One window, for as long as it exists. Equal handles denote the same window.
struct WindowHandle {
    std::uint32_t id = 0;

    auto operator<=>(const WindowHandle&) const = default;
};

} // namespace karto
