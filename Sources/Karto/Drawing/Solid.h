#pragma once
// What translucent things look like where nothing can shine through them: as they would on middle grey.

#include <QColor>
#include <QImage>
#include <QPainterPath>

namespace karto::drawing {

QColor solid(const QColor& color);

// Only what lies within the shape, and of that whole pixels.
QImage solid(const QImage& image, const QPainterPath& shape);

} // namespace karto::drawing
