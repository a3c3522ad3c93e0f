#pragma once
// Pictures as a screen would show them.

#include "Karto/Drawing/QtImages.h"
#include "KartoCore/Picture.h"

#include <QBrush>
#include <QPainter>

#include <ranges>

namespace karto::testing {

inline QRect rectOf(const PixelRect& area) { return {area.x, area.y, area.width, area.height}; }

inline QRect boundsOf(const Picture& picture) {
    QRect bounds;
    for (const auto& tile : picture.tiles) {
        bounds |= rectOf(tile.area);
    }
    return bounds;
}

inline QImage composed(const Picture& picture, QSize size) {
    QImage image = drawing::canvas(size);
    QPainter painter(&image);
    for (const auto& tile : picture.tiles) {
        painter.setBrushOrigin(tile.area.x, tile.area.y);
        painter.fillRect(rectOf(tile.area), QBrush(drawing::view(*tile.image)));
    }
    return image;
}

inline bool isOpaqueOrClear(const QImage& image) {
    const auto pixels = std::views::iota(0, image.width() * image.height());
    return std::ranges::all_of(pixels, [&](int i) {
        const int alpha = qAlpha(image.pixel(i % image.width(), i / image.width()));
        return alpha == 0 || alpha == 255;
    });
}

} // namespace karto::testing
