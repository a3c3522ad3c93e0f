#include "Karto/Drawing/NumberPainter.h"

#include "Karto/Drawing/Blur.h"
#include "Karto/Drawing/QtImages.h"

#include <QFontMetricsF>
#include <QPainter>

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <functional>

namespace karto::drawing {

namespace {

// Of the size of the figures.
constexpr double blurOfSize = 0.04;
constexpr double rimOfSize = 0.05;
constexpr float haloGain = 1.6F;

int blurRadius(int fontSize) { return std::max(1, qRound(fontSize * blurOfSize)); }

int haloReach(int fontSize) { return blurReach(blurRadius(fontSize)); }

// The nearest pixels, at least one each way.
QRect onPixels(const QRectF& bounds) {
    return {qRound(bounds.x()), qRound(bounds.y()), std::max(1, qRound(bounds.width())),
            std::max(1, qRound(bounds.height()))};
}

// The same outline with all edges of its bounds on pixels, so that straight strokes there are sharp.
QPainterPath fitted(const QPainterPath& path, const QRectF& bounds, const QRect& ink) {
    if (bounds.isEmpty()) {
        return path;
    }
    QTransform transform;
    transform.translate(ink.x(), ink.y());
    transform.scale(ink.width() / bounds.width(), ink.height() / bounds.height());
    transform.translate(-bounds.x(), -bounds.y());
    return transform.map(path);
}

// The coverage of what `draw` paints in black.
QImage coverage(QSize size, const std::function<void(QPainter&)>& draw) {
    QImage image = canvas(size);
    QPainter painter(&image);
    draw(painter);
    painter.end();
    return image.convertToFormat(QImage::Format_Alpha8);
}

QImage filled(const QPainterPath& path, QSize size, double scale = 1) {
    return coverage(size, [&](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(scale, scale);
        painter.fillPath(path, Qt::black);
    });
}

QImage solidRim(const QPainterPath& path, QSize size, int fontSize) {
    return coverage(size, [&](QPainter& painter) {
        const double width = 2 * std::max(1.5, fontSize * rimOfSize);
        painter.strokePath(path, QPen(Qt::black, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.fillPath(path, Qt::black);
    });
}

// A halo has no details: a large one is made from a small image.
QImage softHalo(const QPainterPath& path, QSize size, int radius) {
    constexpr int sufficientRadius = 3;
    const int reduction = (radius + sufficientRadius - 1) / sufficientRadius;
    const QSize reduced = (size + QSize(reduction - 1, reduction - 1)) / reduction;
    return blurred(filled(path, reduced, 1.0 / reduction), radius / reduction, haloGain)
        .scaled(reduced * reduction, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// Both of Format_Alpha8. The ends of `added` may lie outside.
void add(QImage& sum, const QImage& added, QPoint corner) {
    const auto common = QRect(corner, added.size()) & sum.rect();
    for (int y = common.top(); y <= common.bottom(); ++y) {
        auto* const to = sum.scanLine(y);
        const auto* const from = added.constScanLine(y - corner.y());
        for (int x = common.left(); x <= common.right(); ++x) {
            to[x] = static_cast<uchar>(std::min(255, to[x] + from[x - corner.x()]));
        }
    }
}

QImage tinted(const QImage& coverage, const QColor& color) {
    QImage image = canvas(coverage.size());
    image.fill(color);
    image.setAlphaChannel(coverage);
    return image;
}

QColor opaque(QColor color) {
    color.setAlphaF(1);
    return color;
}

} // namespace

NumberPainter::NumberPainter(const QFont& font, bool isTranslucent)
    : font_(font)
    , isTranslucent_(isTranslucent) {}

NumberPainter NumberPainter::resized(int size) const {
    auto font = font_;
    font.setPixelSize(size);
    return {font, isTranslucent_};
}

QSize NumberPainter::extent(int number) { return layout(number).bounds.size(); }

QImage NumberPainter::image(int number, const NumberColors& colors) {
    const auto placed = layout(number);
    const auto figures = tinted(assembled(placed, &Figure::ink), opaque(colors.figures));
    auto image = tinted(assembled(placed, &Figure::halo), isTranslucent_ ? colors.halo : opaque(colors.halo));
    QPainter painter(&image);
    if (isTranslucent_) {
        // The figures keep the colours that they would have without a halo.
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.drawImage(0, 0, figures);
    }
    painter.setCompositionMode(isTranslucent_ ? QPainter::CompositionMode_SourceOver
                                              : QPainter::CompositionMode_SourceAtop);
    painter.setOpacity(colors.figures.alphaF());
    painter.drawImage(0, 0, figures);
    return image;
}

NumberPainter::Layout NumberPainter::layout(int number) {
    Layout result{.digits = fmt::to_string(number), .inks = {}, .bounds = {}};
    double pen = 0;
    for (std::size_t i = 0; i < result.digits.size(); ++i) {
        pen += i == 0 ? 0 : pitch(result.digits[i - 1], result.digits[i]);
        result.inks.push_back(onPixels(figure(result.digits[i]).bounds.translated(pen, 0)));
        result.bounds |= result.inks.back();
    }
    return result;
}

double NumberPainter::pitch(char digit, char next) {
    const auto [known, isNew] = pitches_.try_emplace({digit, next});
    if (isNew) {
        // Some pairs stand closer than others.
        const QFontMetricsF metrics(font_);
        const auto following = QChar::fromLatin1(next);
        known->second = metrics.horizontalAdvance(QString(QChar::fromLatin1(digit)) + following) -
                        metrics.horizontalAdvance(following);
    }
    return known->second;
}

NumberPainter::Figure& NumberPainter::figure(char digit) {
    auto& known = figures_.at(static_cast<std::size_t>(digit - '0'));
    if (!known) {
        QPainterPath outline;
        outline.addText(0, 0, font_, QChar::fromLatin1(digit));
        // Contours of one figure may overlap.
        outline.setFillRule(Qt::WindingFill);
        known = Figure{.outline = outline, .bounds = outline.boundingRect(), .ink = {}, .halo = {}};
    }
    return *known;
}

const NumberPainter::Figure& NumberPainter::painted(char digit) {
    auto& figure = this->figure(digit);
    if (figure.ink.isNull()) {
        const int margin = haloReach(size());
        const QRect ink(QPoint(margin, margin), onPixels(figure.bounds).size());
        const auto path = fitted(figure.outline, figure.bounds, ink);
        const auto area = framed(ink.size(), margin);
        figure.ink = filled(path, area);
        figure.halo =
            isTranslucent_ ? softHalo(path, area, blurRadius(size())) : solidRim(path, area, size());
    }
    return figure;
}

QImage NumberPainter::assembled(const Layout& layout, QImage Figure::* part) {
    QImage sum(framed(layout.bounds.size(), haloReach(size())), QImage::Format_Alpha8);
    sum.fill(0);
    for (std::size_t i = 0; i < layout.digits.size(); ++i) {
        add(sum, painted(layout.digits[i]).*part, layout.inks[i].topLeft() - layout.bounds.topLeft());
    }
    return sum;
}

} // namespace karto::drawing
