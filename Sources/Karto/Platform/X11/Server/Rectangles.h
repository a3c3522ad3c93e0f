#pragma once
// Rectangles as the server wants them.

#include "KartoCore/Picture.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <span>
#include <vector>

namespace karto::x11 {

inline xcb_rectangle_t rectangle(const PixelRect& area) {
    const auto coordinate = [](int value) {
        return static_cast<std::int16_t>(std::clamp(value, -0x8000, 0x7FFF));
    };
    const auto length = [](int value) { return static_cast<std::uint16_t>(std::clamp(value, 0, 0xFFFF)); };
    return {.x = coordinate(area.x),
            .y = coordinate(area.y),
            .width = length(area.width),
            .height = length(area.height)};
}

inline std::vector<xcb_rectangle_t> rectangles(std::span<const PixelRect> areas) {
    std::vector<xcb_rectangle_t> result;
    std::ranges::transform(areas, std::back_inserter(result), rectangle);
    return result;
}

} // namespace karto::x11
