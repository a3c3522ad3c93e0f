#include "Karto/Drawing/NumberImage.h"

#include "Karto/Drawing/Blur.h"
#include "Karto/Drawing/QtImages.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace karto::drawing {

namespace {

// Of the size of the figures.
constexpr double blurOfSize = 0.04;
constexpr double rimOfSize = 0.05;
constexpr float haloGain = 1.6F;

int blurRadius(int fontSize) { return std::max(1, qRound(fontSize * blurOfSize)); }

// The same figures with all edges of their bounds on pixels, so that straight strokes there are sharp.
QPainterPath onPixels(const QPainterPath& path, const QRect& ink) {
    const auto bounds = path.boundingRect();
    QTransform transform;
    transform.translate(ink.x(), ink.y());
    transform.scale(ink.width() / bounds.width(), ink.height() / bounds.height());
    transform.translate(-bounds.x(), -bounds.y());
    return transform.map(path);
}

QImage filled(const QPainterPath& path, QSize size, QColor color, double scale = 1) {
    QImage image = canvas(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    color.setAlphaF(1);
    painter.fillPath(path, color);
    return image;
}

// A halo has no details: a large one is made from a small image.
QImage haloCoverage(const QPainterPath& path, QSize size, int radius) {
    constexpr int sufficientRadius = 3;
    const int reduction = (radius + sufficientRadius - 1) / sufficientRadius;
    const QSize reduced = (size + QSize(reduction - 1, reduction - 1)) / reduction;
    return blurred(filled(path, reduced, Qt::black, 1.0 / reduction), radius / reduction, haloGain)
        .scaled(reduced * reduction, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage withHalo(const QPainterPath& path, QSize size, int fontSize, const NumberLook& look) {
    const auto figures = filled(path, size, look.figures);
    QImage image = canvas(size);
    image.fill(look.halo);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, haloCoverage(path, size, blurRadius(fontSize)));
    // The figures keep the colours that they would have without a halo.
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(0, 0, figures);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setOpacity(look.figures.alphaF());
    painter.drawImage(0, 0, figures);
    return image;
}

QImage withRim(const QPainterPath& path, QSize size, int fontSize, const NumberLook& look) {
    QImage image = canvas(size);
    QPainter painter(&image);
    auto rim = look.halo;
    rim.setAlphaF(1);
    const double width = 2 * std::max(1.5, fontSize * rimOfSize);
    painter.strokePath(path, QPen(rim, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(path, rim);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillPath(path, look.figures);
    return image;
}

} // namespace

QPainterPath numberFigures(int number, const QFont& font) {
    QPainterPath path;
    path.addText(0, 0, font, QString::number(number));
    // Contours of one figure may overlap.
    path.setFillRule(Qt::WindingFill);
    return path;
}

QImage numberImage(const QPainterPath& figures, int fontSize, const NumberLook& look) {
    const auto bounds = figures.boundingRect();
    const int margin = blurReach(blurRadius(fontSize));
    const QRect ink(margin, margin, std::max(1, qRound(bounds.width())),
                    std::max(1, qRound(bounds.height())));
    const auto path = onPixels(figures, ink);
    const QSize size = ink.size() + QSize(2 * margin, 2 * margin);
    return look.isTranslucent ? withHalo(path, size, fontSize, look) : withRim(path, size, fontSize, look);
}

} // namespace karto::drawing
