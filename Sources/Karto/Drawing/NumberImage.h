#pragma once
// A number in large figures that is legible on any background, by a halo of the opposite brightness.

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainterPath>

namespace karto::drawing {

struct NumberLook {
    QColor figures;
    // The colour of the halo where it is densest.
    QColor halo;
    // Without it every pixel is opaque or clear: the halo becomes a solid rim.
    bool isTranslucent = true;
};

// The outlines of a number, whose bounds are what it takes without its halo. Takes long for what it is.
QPainterPath numberFigures(int number, const QFont& font);

// The ink of the figures is in the middle of the image. fontSize: theirs, in pixels.
QImage numberImage(const QPainterPath& figures, int fontSize, const NumberLook& look);

} // namespace karto::drawing
