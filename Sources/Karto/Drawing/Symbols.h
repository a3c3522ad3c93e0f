#pragma once
// The symbols on buttons, drawn for the pixels that they get.

#include <QPainterPath>
#include <QRect>

#include <cstdint>

namespace karto::drawing {

enum class Symbol : std::uint8_t { twoColumns, twoRows, trash };

// In the middle of an area, to be filled. size: of text that the symbol would stand beside, in pixels.
QPainterPath symbolPath(Symbol symbol, const QRect& area, double size);

} // namespace karto::drawing
