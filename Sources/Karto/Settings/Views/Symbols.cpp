#include "Karto/Settings/Views/Symbols.h"

#include <QIcon>
#include <QPainter>
#include <QPainterPath>

#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace karto {

namespace {

// Own drawings are made on a square of this side.
constexpr qreal grid = 16;
constexpr qreal stroke = 1.4;

// What icon themes call it; null where they have nothing like it, or not all of what stands beside it.
const char* themeName(Symbol symbol) {
    switch (symbol) {
    case Symbol::warning: return "dialog-warning-symbolic";
    case Symbol::check: return "emblem-ok-symbolic";
    case Symbol::gear:
    case Symbol::keyboard:
    case Symbol::trash:
    case Symbol::overlay:
    case Symbol::layout:
    case Symbol::splitColumns:
    case Symbol::splitRows:
    case Symbol::pin:
    case Symbol::pinFilled: return nullptr;
    }
    std::unreachable();
}

void drawGear(QPainter& painter) {
    constexpr int teeth = 8;
    constexpr qreal outer = 6.9;
    constexpr qreal inner = 5.1;
    // Shares of a tooth's turn, from the middle of one tooth to the middle of the next.
    constexpr std::array<std::pair<qreal, qreal>, 4> corners{
        {{-0.19, outer}, {0.19, outer}, {0.31, inner}, {0.69, inner}}};
    QPolygonF outline;
    for (int tooth = 0; tooth < teeth; ++tooth) {
        for (const auto& [share, radius] : corners) {
            const qreal angle = (tooth + share) * 2 * std::numbers::pi / teeth;
            outline << QPointF(8 + radius * std::sin(angle), 8 - radius * std::cos(angle));
        }
    }
    painter.drawPolygon(outline);
    painter.drawEllipse(QPointF(8, 8), 2.2, 2.2);
}

void drawKeyboard(QPainter& painter) {
    painter.drawRoundedRect(QRectF(1.25, 3.75, 13.5, 8.5), 1.5, 1.5);
    for (const qreal x : {4.0, 6.7, 9.3, 12.0}) {
        painter.drawPoint(QPointF(x, 6.5));
    }
    painter.drawLine(QPointF(4.5, 9.7), QPointF(11.5, 9.7));
}

void drawOverlay(QPainter& painter) {
    painter.drawRoundedRect(QRectF(5.25, 5.25, 9.5, 9.5), 2, 2);
    auto pen = painter.pen();
    pen.setDashPattern({1.4, 1.6});
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    painter.drawPolyline(QPolygonF{{3, 10.75}, {1.25, 10.75}, {1.25, 1.25}, {10.75, 1.25}, {10.75, 3}});
}

void drawLayout(QPainter& painter) {
    painter.drawRoundedRect(QRectF(1.25, 2.25, 5.5, 11.5), 1.2, 1.2);
    painter.drawRoundedRect(QRectF(9.25, 2.25, 5.5, 4.5), 1.2, 1.2);
    painter.drawRoundedRect(QRectF(9.25, 9.25, 5.5, 4.5), 1.2, 1.2);
}

void drawWarning(QPainter& painter) {
    painter.drawPolygon(QPolygonF{{8, 2}, {14.5, 13.5}, {1.5, 13.5}});
    painter.drawLine(QPointF(8, 6.4), QPointF(8, 9.4));
    painter.drawPoint(QPointF(8, 11.6));
}

void drawCheck(QPainter& painter) {
    painter.drawEllipse(QPointF(8, 8), 6.5, 6.5);
    painter.drawPolyline(QPolygonF{{5, 8.2}, {7.2, 10.4}, {11.2, 5.8}});
}

void drawSplit(QPainter& painter, Qt::Orientation line) {
    painter.drawRoundedRect(QRectF(1.75, 2.75, 12.5, 10.5), 1.8, 1.8);
    if (line == Qt::Vertical) {
        painter.drawLine(QPointF(8, 2.75), QPointF(8, 13.25));
    } else {
        painter.drawLine(QPointF(1.75, 8), QPointF(14.25, 8));
    }
}

void drawTrash(QPainter& painter) {
    painter.drawLine(QPointF(2.5, 4.25), QPointF(13.5, 4.25));
    painter.drawPolyline(QPolygonF{{6, 4}, {6, 2.25}, {10, 2.25}, {10, 4}});
    painter.drawPolyline(QPolygonF{{3.8, 4.5}, {4.5, 13.75}, {11.5, 13.75}, {12.2, 4.5}});
    painter.drawLine(QPointF(6.7, 7), QPointF(6.9, 11.2));
    painter.drawLine(QPointF(9.3, 7), QPointF(9.1, 11.2));
}

void drawPin(QPainter& painter) {
    QPainterPath head;
    head.moveTo(5, 2);
    head.lineTo(11, 2);
    head.lineTo(10.2, 6.8);
    head.quadTo(12.6, 8, 12.8, 10);
    head.lineTo(3.2, 10);
    head.quadTo(3.4, 8, 5.8, 6.8);
    head.closeSubpath();
    painter.drawPath(head);
    painter.drawLine(QPointF(8, 10), QPointF(8, 14.2));
}

void draw(QPainter& painter, Symbol symbol, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    switch (symbol) {
    case Symbol::gear: drawGear(painter); break;
    case Symbol::keyboard: drawKeyboard(painter); break;
    case Symbol::overlay: drawOverlay(painter); break;
    case Symbol::layout: drawLayout(painter); break;
    case Symbol::warning: drawWarning(painter); break;
    case Symbol::check: drawCheck(painter); break;
    case Symbol::splitColumns: drawSplit(painter, Qt::Vertical); break;
    case Symbol::splitRows: drawSplit(painter, Qt::Horizontal); break;
    case Symbol::trash: drawTrash(painter); break;
    case Symbol::pinFilled: painter.setBrush(color); [[fallthrough]];
    case Symbol::pin: drawPin(painter); break;
    }
}

} // namespace

QPixmap symbolPixmap(Symbol symbol, int side, qreal ratio, const QColor& color) {
    const QSize pixels = QSizeF(side * ratio, side * ratio).toSize();
    QPixmap pixmap(pixels);
    pixmap.fill(Qt::transparent);
    pixmap.setDevicePixelRatio(ratio);
    const char* name = themeName(symbol);
    const auto icon = name != nullptr ? QIcon::fromTheme(name) : QIcon();
    QPainter painter(&pixmap);
    if (icon.isNull()) {
        painter.scale(side / grid, side / grid);
        draw(painter, symbol, color);
        return pixmap;
    }
    icon.paint(&painter, QRect(0, 0, side, side));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRect(0, 0, side, side), color);
    return pixmap;
}

} // namespace karto
