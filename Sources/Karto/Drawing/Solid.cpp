#include "Karto/Drawing/Solid.h"

#include "Karto/Drawing/QtImages.h"

#include <QPainter>

namespace karto::drawing {

namespace {

constexpr double middleGrey = 0.5;

} // namespace

QColor solid(const QColor& color) {
    const double opacity = color.alphaF();
    const auto mixed = [&](double channel) { return channel * opacity + middleGrey * (1 - opacity); };
    return drawing::color(
        {.red = mixed(color.redF()), .green = mixed(color.greenF()), .blue = mixed(color.blueF())});
}

QImage solid(const QImage& image, const QPainterPath& shape) {
    QImage result = canvas(image.size());
    QPainter painter(&result);
    painter.fillPath(shape, solid(QColor(Qt::transparent)));
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.drawImage(0, 0, image);
    return result;
}

} // namespace karto::drawing
