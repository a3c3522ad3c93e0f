#include "Karto/Settings/Views/Look.h"

#include <QApplication>
#include <QFontInfo>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace karto::look {

namespace {

constexpr qreal titleSize = 20;
constexpr qreal titleShare = 1.35;
constexpr qreal captionShare = 0.85;
constexpr qreal smallestText = 11;
constexpr qreal leastContrast = 4.5;

qreal luminance(const QColor& color) {
    const auto linear = [](qreal channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

qreal contrast(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

// The colour brought nearer to the text's until it can be read.
QColor readable(QColor color, const QColor& text, const QColor& ground) {
    constexpr qreal step = 0.1;
    for (qreal share = step; contrast(color, ground) < leastContrast && share <= 1; share += step) {
        color = mixed(color, text, share);
    }
    return color;
}

qreal normalSize() { return QFontInfo(QApplication::font()).pixelSize(); }

QFont sized(qreal pixels) {
    auto font = QApplication::font();
    font.setPixelSize(std::max(1, qRound(pixels)));
    return font;
}

} // namespace

Colors colors(const QPalette& palette) {
    // What is disabled has its colour here; a style's own would be faded twice.
    const auto ground = palette.color(QPalette::Active, QPalette::Window);
    const auto text = palette.color(QPalette::Active, QPalette::WindowText);
    const bool isDark = luminance(ground) < luminance(text);
    const auto card = isDark ? mixed(ground, Qt::white, 0.055) : mixed(ground, Qt::white, 0.7);
    const auto red = isDark ? QColor(0xFF, 0x7B, 0x72) : QColor(0xC0, 0x1C, 0x28);
    return {.ground = ground,
            .sidebar = mixed(ground, text, 0.035),
            .card = card,
            .control = isDark ? mixed(card, Qt::white, 0.08) : mixed(card, text, 0.09),
            .hairline = mixed(card, text, 0.1),
            .text = text,
            .secondary = readable(mixed(text, card, 0.38), text, ground),
            .disabled = mixed(text, card, 0.52),
            .accent = palette.color(QPalette::Active, QPalette::Highlight),
            .onAccent = palette.color(QPalette::Active, QPalette::HighlightedText),
            .error = readable(red, text, ground)};
}

QColor mixed(const QColor& a, const QColor& b, qreal share) {
    const auto channel = [share](qreal from, qreal to) { return from + (to - from) * share; };
    return QColor::fromRgbF(static_cast<float>(channel(a.redF(), b.redF())),
                            static_cast<float>(channel(a.greenF(), b.greenF())),
                            static_cast<float>(channel(a.blueF(), b.blueF())));
}

QColor faint(QColor color, qreal opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

QFont titleFont() {
    auto font = sized(std::max(titleSize, normalSize() * titleShare));
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont semiboldFont() {
    auto font = QApplication::font();
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont captionFont() { return sized(std::max(smallestText, normalSize() * captionShare)); }

void paintFocusRing(QPainter& painter, const QRectF& control, qreal radius, const QColor& accent) {
    constexpr qreal distance = 2;
    constexpr qreal width = 2;
    constexpr qreal outset = distance + width / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(accent, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(control.adjusted(-outset, -outset, outset, outset), radius + outset,
                            radius + outset);
    painter.restore();
}

void paintHairline(QPainter& painter, qreal left, qreal right, qreal y, const QColor& color) {
    const qreal pixel = 1 / painter.device()->devicePixelRatioF();
    painter.fillRect(QRectF(left, y, right - left, pixel), color);
}

} // namespace karto::look
