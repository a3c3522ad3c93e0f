#include "Karto/Settings/Views/ListRow.h"

#include "Karto/Settings/Views/Look.h"

#include <QHBoxLayout>
#include <QPainter>

#include <algorithm>

namespace karto {

namespace {

constexpr int numberWidth = 20;
constexpr int columnGap = 12;
constexpr qreal hoverOpacity = 0.04;

} // namespace

QHBoxLayout* layOutListRow(QWidget& row, Text& number) {
    row.setFocusPolicy(Qt::StrongFocus);
    row.setAttribute(Qt::WA_Hover);
    row.setFixedHeight(look::rowHeight);
    auto* line = new QHBoxLayout(&row);
    line->setContentsMargins(look::rowPadding, 0, look::rowPadding - 6, 0);
    line->setSpacing(columnGap);
    number.setMinimumWidth(std::max(numberWidth, number.fontMetrics().horizontalAdvance("00")));
    number.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    line->addWidget(&number);
    return line;
}

void paintListRow(QWidget& row, std::optional<QColor> ground) {
    const auto colors = look::colors(row.palette());
    QPainter painter(&row);
    const QRectF area = QRectF(row.rect()).adjusted(1, 1, -1, -1);
    if (!ground && row.underMouse()) {
        ground = look::faint(colors.text, hoverOpacity);
    }
    if (ground) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(*ground);
        painter.drawRoundedRect(area, look::cardRadius - 1, look::cardRadius - 1);
    }
    if (row.hasFocus()) {
        look::paintFocusRing(painter, area.adjusted(4, 4, -4, -4), look::controlRadius, colors.accent);
    }
}

} // namespace karto
