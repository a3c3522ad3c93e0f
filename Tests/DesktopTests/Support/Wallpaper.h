#pragma once
// A picture behind all windows: one colour that passes into another from the top to the bottom.

#include "Support/XClient.h"

#include <cstdint>

namespace karto::desktop {

class Wallpaper {
public:
    // Colours 0xRRGGBB. Covers the whole desktop as it is now.
    Wallpaper(const XClient& client, std::uint32_t top, std::uint32_t bottom);
    Wallpaper(const Wallpaper&) = delete;
    Wallpaper& operator=(const Wallpaper&) = delete;
    Wallpaper(Wallpaper&&) = delete;
    Wallpaper& operator=(Wallpaper&&) = delete;
    ~Wallpaper();

private:
    const XClient& client_;
    xcb_window_t window_;
};

} // namespace karto::desktop
