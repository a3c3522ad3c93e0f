#pragma once
// How a picture gets into a window with as few pixels painted as can be, and which pixels it has at all.

#include "KartoCore/Picture.h"

#include <cstdint>
#include <memory>
#include <span>
#include <variant>
#include <vector>

namespace karto::x11 {

// 0xAARRGGBB, premultiplied.
using Pixel = std::uint32_t;
// An even colour, or an image repeated in both directions.
using Paint = std::variant<Pixel, std::shared_ptr<const Image>>;

enum class Blend : std::uint8_t {
    // The paint takes the place of what is there.
    replace,
    over,
};

struct PaintedArea {
    PixelRect area;
    // The pixel of an image that comes to its top left.
    int imageX = 0;
    int imageY = 0;

    bool operator==(const PaintedArea&) const = default;
};

struct PaintStep {
    Paint paint;
    Blend blend = Blend::over;
    std::vector<PaintedArea> areas;
};

struct PaintPlan {
    // What the whole window is filled with before the first step.
    Pixel background = 0;
    std::vector<PaintStep> steps;
};

enum class Background : std::uint8_t {
    transparent,
    // The colour that fills most of the picture, where one does: it then need not be painted.
    prevailing,
};

// Tiles that show nothing are left out.
PaintPlan planPainting(const Picture& picture, int width, int height, Background background);

// The part of a plan that paints these areas, whatever is there, and nothing else. They do not overlap.
PaintPlan cutDown(const PaintPlan& plan, std::span<const PixelRect> areas);

// The pixels whose alpha is at least one half. The areas may overlap.
std::vector<PixelRect> opaqueArea(const Picture& picture);

// The tiles that have such pixels. They may overlap.
std::vector<PixelRect> opaqueTiles(const Picture& picture);

} // namespace karto::x11
