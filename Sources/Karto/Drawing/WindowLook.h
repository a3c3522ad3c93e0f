#pragma once
// What the texts and pictures of the program's windows have in common. They follow the desktop's font and
// colours; sizes are points.

#include <QFont>
#include <QPalette>
#include <QPixmap>

namespace karto::drawing {

QFont titleFont();
// For what stands below or beside what a person came for.
QFont captionFont();
// With text of less strength, still well read.
QPalette secondaryPalette();

// The program's own icon, drawn where it is not installed. ratio: pixels to a point.
QPixmap programIcon(int side, double ratio);

} // namespace karto::drawing
