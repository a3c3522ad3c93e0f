#pragma once
// Between the images and colours of pictures and those that Qt paints with.

#include "KartoCore/OverlayAppearance.h"
#include "KartoCore/Picture.h"

#include <QColor>
#include <QImage>
#include <QSize>

#include <memory>

namespace karto::drawing {

// With a margin on every side, which may be negative.
constexpr QSize framed(QSize inner, int margin) { return inner + QSize(2 * margin, 2 * margin); }

// Clear, and of the one format that images of pictures are painted in.
QImage canvas(QSize size);
std::shared_ptr<const Image> shared(const QImage& canvas);
// Looks at the pixels of `image`, which must outlive the result.
QImage view(const Image& image);

QColor color(const RGBColor& color, double opacity = 1);
QColor black(double opacity);
QColor white(double opacity);
// Black or white, whichever stands out more from the colour.
QColor contrasting(const RGBColor& color, double opacity = 1);

} // namespace karto::drawing
