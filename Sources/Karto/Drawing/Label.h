#pragma once
// A line of text on a small dark panel.

#include <QFont>
#include <QImage>
#include <QString>

namespace karto::drawing {

// Pixels.
struct LabelLook {
    QFont font;
    double horizontalPadding = 0;
    double verticalPadding = 0;
    double radius = 0;
    double opacity = 1;
    // Without it every pixel is opaque or clear.
    bool isTranslucent = true;
};

// All digits are equally wide, so that a number that changes does not move what stands beside it.
QImage label(const QString& text, const LabelLook& look);

} // namespace karto::drawing
