#include "Karto/Drawing/Label.h"

#include "Karto/Drawing/Panel.h"
#include "Karto/Drawing/QtImages.h"
#include "Karto/Drawing/RoundedRectangle.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>
#include <vector>

namespace karto::drawing {

namespace {

// Of whole pixels, as glyphs are placed on them.
double digitRoom(const QFontMetricsF& metrics) {
    return std::round(metrics.horizontalAdvance(QStringLiteral("0123456789")) / 10);
}

// A part of a text, and how much room it takes: one digit, or what is between two.
struct Run {
    QString text;
    double room = 0;
    double width = 0;
};

std::vector<Run> runsOf(const QString& text, const QFontMetricsF& metrics) {
    std::vector<Run> runs;
    for (qsizetype start = 0; start < text.size();) {
        const bool isDigit = text[start].isDigit();
        auto end = start + 1;
        while (!isDigit && end < text.size() && !text[end].isDigit()) {
            ++end;
        }
        const auto part = text.mid(start, end - start);
        const double width = metrics.horizontalAdvance(part);
        runs.push_back({.text = part, .room = isDigit ? digitRoom(metrics) : width, .width = width});
        start = end;
    }
    return runs;
}

} // namespace

QImage label(const QString& text, const LabelLook& look) {
    const QFontMetricsF metrics(look.font);
    const auto runs = runsOf(text, metrics);
    double width = 0;
    for (const auto& run : runs) {
        width += run.room;
    }
    QImage image = canvas(
        {qRound(width + 2 * look.horizontalPadding), qRound(metrics.height() + 2 * look.verticalPadding)});
    QPainter painter(&image);
    // An opaque panel is cut out of its window by whole pixels.
    painter.setRenderHint(QPainter::Antialiasing, look.isTranslucent);
    painter.fillPath(roundedRectangle(image.rect(), look.radius),
                     panelColor(look.opacity, look.isTranslucent));
    painter.setFont(look.font);
    painter.setPen(white(1));
    double x = (image.width() - width) / 2;
    const double baseline = (image.height() - metrics.height()) / 2 + metrics.ascent();
    for (const auto& run : runs) {
        painter.drawText(QPointF(x + (run.room - run.width) / 2, baseline), run.text);
        x += run.room;
    }
    return image;
}

} // namespace karto::drawing
