#pragma once
// Where the zones of the sample configuration are on the private desktop, with the panel at the lower edge of
// its portrait display.

#include "KartoCore/Geometry.h"

#include <cmath>

namespace karto::desktop {

namespace zone {
inline constexpr Rect one{.x = 0, .y = 0, .width = 640, .height = 800};
inline constexpr Rect two{.x = 640, .y = 0, .width = 640, .height = 400};
inline constexpr Rect three{.x = 640, .y = 400, .width = 640, .height = 400};
inline constexpr Rect four{.x = 1280, .y = 497.5, .width = 600, .height = 497.5};
inline constexpr Rect five{.x = 1280, .y = 0, .width = 600, .height = 497.5};
inline constexpr Rect studio{.x = 0, .y = 0, .width = 1280, .height = 800};
inline constexpr Rect rightOfStudio{.x = 640, .y = 0, .width = 640, .height = 800};
// Without the panel.
inline constexpr Rect tower{.x = 1280, .y = 0, .width = 600, .height = 995};
} // namespace zone

inline constexpr int panelHeight = 29;
inline constexpr Rect somewhere{.x = 100, .y = 90, .width = 420, .height = 310};

// Equal but for the rounding to whole pixels of every edge.
inline bool fits(const Rect& frame, const Rect& wanted) {
    return std::abs(frame.x - wanted.x) < 1 && std::abs(frame.y - wanted.y) < 1 &&
           std::abs(frame.maxX() - wanted.maxX()) < 1 && std::abs(frame.maxY() - wanted.maxY()) < 1;
}

} // namespace karto::desktop
