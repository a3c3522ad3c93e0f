#include "Karto/Drawing/WindowLook.h"

#include "Karto/Drawing/QtImages.h"
#include "Karto/MenuBarIcon.h"

#include <QApplication>
#include <QIcon>
#include <QLinearGradient>
#include <QPainter>

#include <algorithm>

namespace karto::drawing {

namespace {

constexpr int titleSize = 20;
constexpr int smallestText = 11;
constexpr double captionScale = 0.85;
constexpr double secondaryStrength = 0.64;

QColor mixed(const QColor& color, const QColor& ground, double strength) {
    const auto channel = [strength](float above, float below) {
        return float(above * strength + below * (1 - strength));
    };
    return QColor::fromRgbF(channel(color.redF(), ground.redF()), channel(color.greenF(), ground.greenF()),
                            channel(color.blueF(), ground.blueF()));
}

// The program's own drawing on a tile in the accent.
QPixmap drawnIcon(int points, double ratio) {
    const auto palette = QApplication::palette();
    const int side = qRound(points * ratio);
    const int inset = side / 5;
    const auto accent = palette.color(QPalette::Highlight);
    const auto ink = palette.color(QPalette::HighlightedText);
    const auto zones = MenuBarIcon::draw(
        {.side = side - 2 * inset, .ink = {.red = ink.redF(), .green = ink.greenF(), .blue = ink.blueF()}});
    QPixmap tile(side, side);
    tile.fill(Qt::transparent);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient light(0, 0, 0, side);
    light.setColorAt(0, accent.lighter(112));
    light.setColorAt(1, accent.darker(108));
    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    const double radius = side * 0.22;
    painter.drawRoundedRect(QRectF(0, 0, side, side), radius, radius);
    painter.drawImage(inset, inset, view(zones));
    painter.end();
    tile.setDevicePixelRatio(ratio);
    return tile;
}

} // namespace

QFont titleFont() {
    auto font = QApplication::font();
    font.setPixelSize(titleSize);
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont captionFont() {
    auto font = QApplication::font();
    font.setPixelSize(std::max(smallestText, qRound(QFontInfo(font).pixelSize() * captionScale)));
    return font;
}

QPalette secondaryPalette() {
    auto palette = QApplication::palette();
    palette.setColor(QPalette::WindowText, mixed(palette.color(QPalette::WindowText),
                                                 palette.color(QPalette::Window), secondaryStrength));
    return palette;
}

QPixmap programIcon(int side, double ratio) {
    const auto installed = QIcon::fromTheme("karto").pixmap({side, side}, ratio);
    return installed.isNull() ? drawnIcon(side, ratio) : installed;
}

} // namespace karto::drawing
