#pragma once
// A number in large figures that is legible on any background, by a halo of the opposite brightness.

#include <QColor>
#include <QFont>
#include <QImage>
#include <QSizeF>

namespace karto::drawing {

struct NumberLook {
    QColor figures;
    // The colour of the halo where it is densest.
    QColor halo;
    // Without it every pixel is opaque or clear: the halo becomes a solid rim.
    bool isTranslucent = true;
};

// What the figures of a number take, without their halo.
QSizeF numberExtent(int number, const QFont& font);

// The ink of the figures is in the middle of the image.
QImage numberImage(int number, const QFont& font, const NumberLook& look);

} // namespace karto::drawing
