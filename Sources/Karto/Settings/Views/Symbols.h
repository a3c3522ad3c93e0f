#pragma once
// The small pictures of the program's windows: symbolic icons of the desktop's theme where it has them, and
// our own of the same manner where it has none.

#include <QColor>
#include <QPixmap>

#include <cstdint>

namespace karto {

enum class Symbol : std::uint8_t {
    gear,
    keyboard,
    overlay,
    layout,
    warning,
    check,
    splitColumns,
    splitRows,
    trash,
    pin,
    pinFilled,
};

// Square, in one colour. side: points; ratio: pixels to a point.
QPixmap symbolPixmap(Symbol symbol, int side, qreal ratio, const QColor& color);

} // namespace karto
