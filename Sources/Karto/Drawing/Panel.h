#pragma once
// The dark rounded panel behind messages and lists.

#include "Karto/Drawing/NinePatch.h"

#include <QColor>

namespace karto::drawing {

// Black of that opacity; for a panel that lets nothing shine through, what it looks like on middle grey.
QColor panelColor(double opacity, bool isTranslucent);

NinePatch panelPatch(double radius, const QColor& color);

// How many pixels are kept at a corner of that radius.
int cornerPixels(double radius);

} // namespace karto::drawing
