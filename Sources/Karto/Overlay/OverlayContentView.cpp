#include "Karto/Overlay/OverlayContentView.h"

#include "Karto/Drawing/Fonts.h"
#include "Karto/Drawing/NumberPainter.h"
#include "Karto/Drawing/Panel.h"
#include "Karto/Drawing/Paragraph.h"
#include "Karto/Drawing/QtImages.h"
#include "Karto/Drawing/RoundedRectangle.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <utility>
#include <variant>

namespace karto {

namespace {

using namespace drawing;

// Points.
constexpr double zoneRadius = 12;
constexpr double borderWidth = 1.5;
constexpr double selectedBorderWidth = 3;
constexpr double borderOpacity = 0.3;
constexpr double numberOpacity = 0.75;

// What makes borders and numbers stand out from a background of their own colour.
constexpr double hairlineWidth = 1;
constexpr double hairlineOpacity = 0.25;
constexpr double haloOpacity = 0.55;

constexpr double messageSize = 20;
constexpr double messagePadding = 28;
constexpr double messageWidth = 640;
constexpr double messageRadius = 16;
constexpr double messageOpacity = 0.75;

PixelRect pixels(const Rect& rect, Point origin) {
    auto result = nearestPixels(rect);
    result.x -= nearestPixel(origin.x);
    result.y -= nearestPixel(origin.y);
    return result;
}

PixelRect centered(QSize size, const PixelRect& area) {
    return {.x = area.x + (area.width - size.width()) / 2,
            .y = area.y + (area.height - size.height()) / 2,
            .width = size.width(),
            .height = size.height()};
}

void place(Picture& picture, std::shared_ptr<const Image> image, const PixelRect& area) {
    const auto where = centered({image->width, image->height}, area);
    picture.tiles.push_back({.image = std::move(image), .area = where});
}

struct Border {
    RGBColor color;
    double opacity = 1;
    // Pixels, like the hairline's.
    double width = 0;
    double hairline = 0;
};

QImage translucentZone(QSize size, double radius, const Border& border, double backgroundOpacity) {
    QImage image = canvas(size);
    const QRectF area(image.rect());
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(roundedRectangle(area, radius), black(backgroundOpacity));
    painter.fillPath(ring(area, radius, border.width, border.width + border.hairline),
                     contrasting(border.color, hairlineOpacity));
    painter.fillPath(ring(area, radius, 0, border.width), color(border.color, border.opacity));
    return image;
}

// Every pixel opaque or clear: the border and a rim that sets it off.
QImage outlinedZone(QSize size, double radius, const Border& border) {
    QImage image = canvas(size);
    const QRectF area(image.rect());
    const double width = std::max(1.0, std::round(border.width));
    const double rim = std::max(1.0, std::round(border.hairline));
    QPainter painter(&image);
    painter.fillPath(ring(area, radius, 0, width + rim), contrasting(border.color));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillPath(ring(area, radius, 0, width), color(border.color));
    return image;
}

Picture paintMessage(const OverlayMessage& message, const PixelRect& window, const StageStyle& style) {
    const auto scaled = [&](double points) { return static_cast<int>(std::lround(points * style.scale)); };
    const int padding = std::min({scaled(messagePadding), window.width / 4, window.height / 4});
    const QSize panel(std::min(scaled(messageWidth), window.width), window.height);
    auto text = shared(paragraph(QString::fromStdString(message),
                                 roundedFont(messageSize * style.scale, QFont::Medium), white(1),
                                 framed(panel, -padding)));

    Picture picture;
    panelPatch(messageRadius * style.scale, panelColor(messageOpacity, style.isTranslucent))
        .fill(picture, centered(framed({text->width, text->height}, padding), window));
    place(picture, std::move(text), window);
    return picture;
}

// How far `extent` must shrink to fit into `room`.
double fittingShare(QSizeF extent, QSizeF room) {
    return std::clamp(std::min(room.width() / extent.width(), room.height() / extent.height()), 0.0, 1.0);
}

} // namespace

// Zones of one look.
class OverlayPainter::ZonePainter {
public:
    ZonePainter(const OverlayAppearance& appearance, const StageStyle& style)
        : appearance_(appearance)
        , style_(style)
        , fullSize_(roundedFont(appearance.numberSize * style.scale, QFont::DemiBold), style.isTranslucent) {}

    [[nodiscard]] bool hasLook(const OverlayAppearance& appearance, const StageStyle& style) const {
        return appearance == appearance_ && style == style_;
    }

    void paint(Picture& picture, const OverlayZone& zone, const PixelRect& area) {
        if (area.width > 0 && area.height > 0) {
            paintShape(picture, area, zone.isSelected);
            place(picture, numberImage(zone, area), area);
        }
    }

private:
    struct PaintedNumber {
        // Of the figures, in pixels.
        int size = 0;
        std::shared_ptr<const Image> image;
    };

    [[nodiscard]] QImage shape(QSize size, bool isSelected) const {
        const Border border{.color = isSelected ? style_.accent : appearance_.color,
                            .opacity = isSelected ? 1 : borderOpacity,
                            .width = (isSelected ? selectedBorderWidth : borderWidth) * style_.scale,
                            .hairline = hairlineWidth * style_.scale};
        const double radius = zoneRadius * style_.scale;
        return style_.isTranslucent ? translucentZone(size, radius, border, appearance_.backgroundOpacity)
                                    : outlinedZone(size, radius, border);
    }

    void paintShape(Picture& picture, const PixelRect& area, bool isSelected) {
        auto& patch = patches_[isSelected];
        if (!patch) {
            const int side = 2 * cornerPixels(zoneRadius * style_.scale) + 1;
            patch.emplace(shape({side, side}, isSelected));
        }
        if (area.width >= patch->least() && area.height >= patch->least()) {
            patch->fill(picture, area);
        } else {
            place(picture, shared(shape({area.width, area.height}, isSelected)), area);
        }
    }

    std::shared_ptr<const Image> numberImage(const OverlayZone& zone, const PixelRect& area) {
        const int size = fittingSize(zone.number, area);
        auto& [paintedSize, image] = numbers_[{zone.number, zone.isSelected}];
        if (paintedSize != size) {
            const auto& tint = zone.isSelected ? style_.accent : appearance_.color;
            const double opacity = zone.isSelected || !style_.isTranslucent ? 1 : numberOpacity;
            paintedSize = size;
            image = shared(painter(size).image(
                zone.number, {.figures = color(tint, opacity), .halo = contrasting(tint, haloOpacity)}));
        }
        return image;
    }

    NumberPainter& painter(int size) {
        if (size == fullSize_.size()) {
            return fullSize_;
        }
        if (!smaller_ || smaller_->size() != size) {
            smaller_ = fullSize_.resized(size);
        }
        return *smaller_;
    }

    int fittingSize(int number, const PixelRect& area) {
        const double edges = 2 * (borderWidth + hairlineWidth) * style_.scale;
        const double share =
            fittingShare(fullSize_.extent(number), {area.width - edges, area.height - edges});
        return std::max(1, static_cast<int>(fullSize_.size() * share));
    }

    OverlayAppearance appearance_;
    StageStyle style_;
    // Of the look's size.
    NumberPainter fullSize_;
    // Of the size that the last number took which had too little room.
    std::optional<NumberPainter> smaller_;
    // By whether the zone is selected.
    std::map<bool, std::optional<NinePatch>> patches_;
    // By number and whether its zone is selected, in the size last painted.
    std::map<std::pair<int, bool>, PaintedNumber> numbers_;
};

Picture OverlayPainter::paint(const OverlayContentView& view, const StageStyle& style) {
    auto picture = paintContent(view, style);
    if (view.editing) {
        if (!editing_ || editing_->style() != style) {
            editing_.emplace(style);
        }
        editing_->paint(picture, *view.editing, view.displayFrame.size());
    }
    return picture;
}

Picture OverlayPainter::paintContent(const OverlayContentView& view, const StageStyle& style) {
    const auto window = pixels(view.displayFrame, view.displayFrame.origin());
    if (const auto* message = std::get_if<OverlayMessage>(&view.content)) {
        return paintMessage(*message, window, style);
    }
    if (!zones_ || !zones_->hasLook(view.appearance, style)) {
        zones_ = std::make_shared<ZonePainter>(view.appearance, style);
    }
    Picture picture;
    for (const auto& zone : std::get<OverlayZones>(view.content)) {
        zones_->paint(picture, zone, pixels(zone.rect, view.displayFrame.origin()));
    }
    return picture;
}

} // namespace karto
