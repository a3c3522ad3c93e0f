#pragma once
// Images, and pictures put together from few of them.

#include "KartoCore/Geometry.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace karto {

// Rows from the top; pixels 0xAARRGGBB, colours premultiplied by alpha.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    bool operator==(const Image&) const = default;
};

// An image at the top left of an area, repeated in both directions until the area is filled. One pixel is
// enough for an even fill, a row or a column of them for a straight border.
struct PictureTile {
    std::shared_ptr<const Image> image;
    PixelRect area;
};

// Tiles painted over one another, the first at the bottom, on nothing: what no tile covers lets everything
// below shine through. Large even areas cost neither time nor memory.
struct Picture {
    std::vector<PictureTile> tiles;
};

} // namespace karto
