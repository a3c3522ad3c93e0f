#include "Karto/Drawing/Panel.h"

#include "Karto/Drawing/QtImages.h"
#include "Karto/Drawing/RoundedRectangle.h"
#include "Karto/Drawing/Solid.h"

#include <QPainter>

#include <cmath>

namespace karto::drawing {

QColor panelColor(double opacity, bool isTranslucent) {
    return isTranslucent ? black(opacity) : solid(black(opacity));
}

NinePatch panelPatch(double radius, const QColor& color) {
    const int side = 2 * cornerPixels(radius) + 1;
    QImage square = canvas({side, side});
    QPainter painter(&square);
    // An opaque panel is cut out of its window by whole pixels.
    painter.setRenderHint(QPainter::Antialiasing, color.alpha() < 255);
    painter.fillPath(roundedRectangle(square.rect(), radius), color);
    return NinePatch(square);
}

int cornerPixels(double radius) { return static_cast<int>(std::ceil(cornerReach(radius))); }

} // namespace karto::drawing
