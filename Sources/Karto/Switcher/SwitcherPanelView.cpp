#include "Karto/Switcher/SwitcherPanelView.h"

#include "Karto/Drawing/Fonts.h"
#include "Karto/Drawing/Panel.h"
#include "Karto/Drawing/QtImages.h"
#include "Karto/Drawing/RoundedRectangle.h"
#include "KartoCore/SwitcherPanelLayout.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace karto {

namespace {

using namespace drawing;

// Points.
constexpr double panelRadius = 12;
constexpr double panelOpacity = 0.8;
constexpr double horizontalPadding = 12;
constexpr double spacing = 10;
constexpr double iconSize = 20;
constexpr double textSize = 13;
constexpr double titleOpacity = 0.7;
constexpr double selectionOpacity = 0.55;
// Of the arrow that stands for more rows, in the padding above or below those shown.
constexpr double arrowWidth = 14;
constexpr double arrowHeight = 3;
constexpr double arrowPen = 1.5;
constexpr double arrowOpacity = 0.6;
// Of the room for both texts: what the name takes at most from a title that needs it too.
constexpr double largestNameShare = 0.6;

int toPixels(double points, double scale) { return static_cast<int>(std::lround(points * scale)); }

PixelRect panelArea(std::size_t rowCount, double scale) {
    const double height = SwitcherPanelLayout::height(static_cast<int>(rowCount));
    return {.width = toPixels(SwitcherPanelLayout::width, scale), .height = toPixels(height, scale)};
}

PixelRect rowArea(std::size_t index, double scale) {
    const auto edge = [&](std::size_t row) {
        return toPixels(SwitcherPanelLayout::verticalPadding +
                            static_cast<double>(row) * SwitcherPanelLayout::rowHeight,
                        scale);
    };
    return {.x = 0,
            .y = edge(index),
            .width = toPixels(SwitcherPanelLayout::width, scale),
            .height = edge(index + 1) - edge(index)};
}

// As much of the panel's own shape as lies behind the row.
std::shared_ptr<const Image> selectionImage(const PixelRect& panel, const PixelRect& row,
                                            const StageStyle& style) {
    QImage image = canvas({row.width, row.height});
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, style.isTranslucent);
    painter.translate(0, -row.y);
    painter.fillPath(roundedRectangle(QRectF(0, 0, panel.width, panel.height), panelRadius * style.scale),
                     color(style.accent, selectionOpacity));
    return shared(image);
}

// In the upper padding it points up, in the lower one down.
enum class Arrow : std::uint8_t { up, down };

PictureTile arrowTile(const PixelRect& panel, Arrow arrow, double scale) {
    const int height = toPixels(SwitcherPanelLayout::verticalPadding, scale);
    QImage image = canvas({toPixels(arrowWidth, scale), height});
    const QRectF area = image.rect();
    const double reach = (arrow == Arrow::up ? -1 : 1) * arrowHeight * scale / 2;
    const double side = arrowPen * scale / 2;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(white(arrowOpacity), arrowPen * scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF{{area.left() + side, area.center().y() - reach},
                                   {area.center().x(), area.center().y() + reach},
                                   {area.right() - side, area.center().y() - reach}});
    return {.image = shared(image),
            .area = {.x = (panel.width - image.width()) / 2,
                     .y = arrow == Arrow::up ? 0 : panel.height - height,
                     .width = image.width(),
                     .height = height}};
}

void paintIcon(QPainter& painter, const Image& icon, const QRect& place) {
    const auto scaled = view(icon).scaled(place.size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(place.x() + (place.width() - scaled.width()) / 2,
                      place.y() + (place.height() - scaled.height()) / 2, scaled);
}

struct Texts {
    QString name;
    QString title;
    double titleStart = 0;
};

// The name gets room first, but leaves some for a title.
Texts fit(const SwitcherRow& row, const QFontMetricsF& nameMetrics, const QFontMetricsF& titleMetrics,
          double room, double gap) {
    // On one line, whatever characters they hold.
    const auto name = QString::fromStdString(row.appName).simplified();
    const auto title = QString::fromStdString(row.title.value_or("")).simplified();
    if (title.isEmpty()) {
        return {.name = nameMetrics.elidedText(name, Qt::ElideRight, room), .title = {}};
    }
    const double shared = room - gap;
    const double nameRoom =
        std::max(shared - titleMetrics.horizontalAdvance(title), shared * largestNameShare);
    const auto fittingName = nameMetrics.elidedText(name, Qt::ElideRight, nameRoom);
    const double titleStart = nameMetrics.horizontalAdvance(fittingName) + gap;
    return {.name = fittingName,
            .title = titleMetrics.elidedText(title, Qt::ElideMiddle, room - titleStart),
            .titleStart = titleStart};
}

QImage paintRow(const SwitcherRow& row, QSize size, double scale) {
    QImage image = canvas(size);
    QPainter painter(&image);
    const int icon = toPixels(iconSize, scale);
    const int left = toPixels(horizontalPadding, scale);
    if (row.icon) {
        paintIcon(painter, *row.icon, {left, (size.height() - icon) / 2, icon, icon});
    }

    const auto nameFont = systemFont(textSize * scale, QFont::DemiBold);
    const auto titleFont = systemFont(textSize * scale, QFont::Normal);
    const QFontMetricsF nameMetrics(nameFont);
    const int textLeft = left + icon + toPixels(spacing, scale);
    const auto texts = fit(row, nameMetrics, QFontMetricsF(titleFont), size.width() - textLeft - left,
                           toPixels(spacing, scale));
    // Capitals are as far from the row's top as from its bottom.
    const double baseline = std::round((size.height() + nameMetrics.capHeight()) / 2);
    painter.setFont(nameFont);
    painter.setPen(white(1));
    painter.drawText(QPointF(textLeft, baseline), texts.name);
    painter.setFont(titleFont);
    painter.setPen(white(titleOpacity));
    painter.drawText(QPointF(std::round(textLeft + texts.titleStart), baseline), texts.title);
    return image;
}

} // namespace

Picture SwitcherPainter::paint(const SwitcherPanelView& view, const StageStyle& style) {
    Picture picture;
    const auto panel = panelArea(view.rows.size(), style.scale);
    panelPatch(panelRadius * style.scale, panelColor(panelOpacity, style.isTranslucent)).fill(picture, panel);
    for (std::size_t i = 0; i < view.rows.size(); ++i) {
        const auto area = rowArea(i, style.scale);
        if (view.rows[i].id == view.selected) {
            picture.tiles.push_back({.image = selectionImage(panel, area, style), .area = area});
        }
        picture.tiles.push_back({.image = rowImage(view.rows[i], area, style.scale), .area = area});
    }
    if (view.continuesAbove) {
        picture.tiles.push_back(arrowTile(panel, Arrow::up, style.scale));
    }
    if (view.continuesBelow) {
        picture.tiles.push_back(arrowTile(panel, Arrow::down, style.scale));
    }
    return picture;
}

std::shared_ptr<const Image> SwitcherPainter::rowImage(const SwitcherRow& row, const PixelRect& area,
                                                       double scale) {
    if (scale != scale_) {
        painted_.clear();
        scale_ = scale;
    }
    auto& [paintedRow, image] = painted_[row.id];
    // Where a row is a fraction of a pixel high, its places are not all of one height.
    if (!image || image->height != area.height || paintedRow != row) {
        paintedRow = row;
        image = shared(paintRow(row, {area.width, area.height}, scale));
    }
    return image;
}

} // namespace karto
