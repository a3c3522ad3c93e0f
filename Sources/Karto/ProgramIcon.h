#pragma once
// The program's own icon for its windows, drawn in the desktop's accent where it is not installed.

#include <QPixmap>

namespace karto {

// side: points; ratio: pixels to a point.
QPixmap programIcon(int side, double ratio);

} // namespace karto
