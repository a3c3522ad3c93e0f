#include "Karto/Drawing/NinePatch.h"

#include "Karto/Drawing/QtImages.h"

#include <algorithm>

namespace karto::drawing {

namespace {

struct Stretch {
    int start = 0;
    int length = 0;
};

using Stretches = std::array<Stretch, 3>;

Stretches stretches(int start, int length, int corner) {
    return {Stretch{.start = start, .length = corner},
            Stretch{.start = start + corner, .length = length - 2 * corner},
            Stretch{.start = start + length - corner, .length = corner}};
}

} // namespace

NinePatch::NinePatch(const QImage& square)
    : corner_(square.width() / 2) {
    const auto cuts = stretches(0, square.width(), corner_);
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            auto part = shared(
                square.copy(cuts[column].start, cuts[row].start, cuts[column].length, cuts[row].length));
            if (std::ranges::any_of(part->pixels, [](auto pixel) { return pixel != 0; })) {
                parts_[row][column] = std::move(part);
            }
        }
    }
}

void NinePatch::fill(Picture& picture, const PixelRect& area) const {
    const auto columns = stretches(area.x, area.width, corner_);
    const auto rows = stretches(area.y, area.height, corner_);
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            const PixelRect place{.x = columns[column].start,
                                  .y = rows[row].start,
                                  .width = columns[column].length,
                                  .height = rows[row].length};
            if (parts_[row][column] && place.width > 0 && place.height > 0) {
                picture.tiles.push_back({.image = parts_[row][column], .area = place});
            }
        }
    }
}

} // namespace karto::drawing
