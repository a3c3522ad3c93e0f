#include "Karto/ProgramIcon.h"

#include "Karto/Drawing/QtImages.h"
#include "Karto/MenuBarIcon.h"

#include <QApplication>
#include <QIcon>
#include <QLinearGradient>
#include <QPainter>
#include <QPalette>

namespace karto {

namespace {

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
    painter.drawImage(inset, inset, drawing::view(zones));
    painter.end();
    tile.setDevicePixelRatio(ratio);
    return tile;
}

} // namespace

QPixmap programIcon(int side, double ratio) {
    const auto installed = QIcon::fromTheme("karto").pixmap({side, side}, ratio);
    return installed.isNull() ? drawnIcon(side, ratio) : installed;
}

} // namespace karto
