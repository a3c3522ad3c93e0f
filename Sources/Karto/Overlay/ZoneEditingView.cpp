#include "Karto/Overlay/ZoneEditingView.h"

#include "Karto/Drawing/Fonts.h"
#include "Karto/Drawing/Label.h"
#include "Karto/Drawing/QtImages.h"
#include "Karto/Drawing/RoundedRectangle.h"
#include "Karto/Drawing/Solid.h"
#include "Karto/Drawing/Symbols.h"
#include "KartoCore/PixelArea.h"
#include "KartoCore/ZoneEditing.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace karto {

namespace {

using namespace drawing;

// Points.
constexpr double symbolSize = 14;
constexpr double buttonRadius = 7;
constexpr double buttonBorder = 1;
constexpr double readoutSize = 15;
constexpr double readoutHorizontalPadding = 10;
constexpr double readoutVerticalPadding = 6;
constexpr double readoutRadius = 8;
constexpr double helpSize = 12;
constexpr double helpHorizontalPadding = 8;
constexpr double helpVerticalPadding = 4;
constexpr double helpRadius = 6;
// From the buttons, past the tip of a cursor that points at one.
constexpr double helpDistance = 12;
constexpr double helpMargin = 4;

constexpr double stripOpacity = 0.15;
constexpr double hotStripOpacity = 0.75;
constexpr double panelOpacity = 0.8;
constexpr double borderOpacity = 0.35;
constexpr double disabledOpacity = 0.35;
constexpr double pointedAtOpacity = 0.2;
constexpr double helpOpacity = 0.85;

std::shared_ptr<const Image> even(const QColor& color) {
    QImage pixel = canvas({1, 1});
    pixel.fill(color);
    return shared(pixel);
}

Symbol symbolOf(ZoneButton button) {
    switch (button) {
    case ZoneButton::splitIntoColumns: return Symbol::twoColumns;
    case ZoneButton::splitIntoRows: return Symbol::twoRows;
    case ZoneButton::remove: break;
    }
    return Symbol::trash;
}

QImage faded(QImage image, double opacity) {
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(image.rect(), black(opacity));
    return image;
}

} // namespace

std::optional<NormRect> ZoneEditingView::zoneWithButtons() const {
    const auto zone = buttonsFor ? ZoneEditing::zone(*buttonsFor, root) : std::nullopt;
    return zone ? std::optional(zone->rect) : std::nullopt;
}

void ZoneEditingPainter::paint(Picture& picture, const ZoneEditingView& view, const Size& extent) {
    const EditingSpace space{.extent = extent, .scale = style_.scale};
    paintStrips(picture, view, space);
    paintReadout(picture, view, space);
    paintButtons(picture, view, space);
}

void ZoneEditingPainter::paintStrips(Picture& picture, const ZoneEditingView& view,
                                     const EditingSpace& space) const {
    const auto fill = [&](const QColor& color) { return even(style_.isTranslucent ? color : solid(color)); };
    const auto strip = fill(white(stripOpacity));
    const auto hotStrip = fill(color(style_.accent, hotStripOpacity));
    auto boundaries = ZoneEditing::boundaries(view.root, NormRect::full());
    // Where strips cross, they would be brighter; the marked one is whole.
    const auto hot = std::ranges::find(boundaries, view.hot, &EditBoundary::path);
    if (hot != boundaries.end()) {
        std::rotate(boundaries.begin(), hot, std::next(hot));
    }
    std::vector<PixelRect> painted;
    for (const auto& boundary : boundaries) {
        const auto whole = space.pixels(ZoneEditing::grabStrip(boundary, space.displaySize()));
        std::vector<PixelRect> areas{whole};
        for (const auto& other : painted) {
            if (overlap(other, whole)) {
                areas = without(areas, other);
            }
        }
        for (const auto& area : areas) {
            picture.tiles.push_back({.image = boundary.path == view.hot ? hotStrip : strip, .area = area});
        }
        painted.push_back(whole);
    }
}

void ZoneEditingPainter::paintReadout(Picture& picture, const ZoneEditingView& view,
                                      const EditingSpace& space) {
    const auto boundary = view.dragging ? ZoneEditing::boundary(*view.dragging, view.root) : std::nullopt;
    if (!boundary) {
        return;
    }
    auto text = ZoneEditing::readout(*boundary, space.displaySize());
    if (readout_.text != text) {
        const LabelLook look{.font = roundedFont(readoutSize * style_.scale, QFont::DemiBold),
                             .horizontalPadding = readoutHorizontalPadding * style_.scale,
                             .verticalPadding = readoutVerticalPadding * style_.scale,
                             .radius = readoutRadius * style_.scale,
                             .opacity = panelOpacity,
                             .isTranslucent = style_.isTranslucent};
        readout_.image = shared(label(QString::fromStdString(text), look));
        readout_.text = std::move(text);
    }
    const auto pointer = view.pointer ? std::optional(space.points(*view.pointer)) : std::nullopt;
    const Point centre = ZoneEditing::readoutPoint(pointer, *boundary, space.displaySize());
    const auto& image = readout_.image;
    picture.tiles.push_back({.image = image,
                             .area = {.x = nearestPixel(centre.x * style_.scale - image->width / 2.0),
                                      .y = nearestPixel(centre.y * style_.scale - image->height / 2.0),
                                      .width = image->width,
                                      .height = image->height}});
}

void ZoneEditingPainter::paintButtons(Picture& picture, const ZoneEditingView& view,
                                      const EditingSpace& space) {
    const auto zone = view.zoneWithButtons();
    if (!view.buttonsFor || !zone) {
        return;
    }
    for (const auto button : ZoneButtons::all) {
        auto state = ButtonState::enabled;
        if (!ZoneButtons::isEnabled(button, *view.buttonsFor, view.root)) {
            state = ButtonState::disabled;
        } else if (view.pointedAt == button) {
            state = view.isPressed ? ButtonState::pressed : ButtonState::pointedAt;
        }
        auto& image = buttons_[{button, state}];
        if (!image) {
            image = paintButton(button, state);
        }
        picture.tiles.push_back({.image = image, .area = ZoneButtons::area(button, *zone, space)});
    }
    if (view.showsHelp && view.pointedAt) {
        const auto button = *view.pointedAt;
        const auto text =
            ZoneButtons::helpText(button, ZoneButtons::isEnabled(button, *view.buttonsFor, view.root));
        paintHelp(picture, text, ZoneButtons::area(button, *zone, space), space);
    }
}

std::shared_ptr<const Image> ZoneEditingPainter::paintButton(ZoneButton button, ButtonState state) const {
    const double scale = style_.scale;
    const int side = nearestPixel(ZoneEditing::buttonSide * scale);
    const QRect area(0, 0, side, side);
    const double border = std::max(1.0, std::round(buttonBorder * scale));
    const auto shape = roundedRectangle(area, buttonRadius * scale);
    QImage image = canvas(area.size());
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shape, black(panelOpacity));
    auto ink = white(1);
    if (state == ButtonState::pointedAt) {
        painter.fillPath(shape, white(pointedAtOpacity));
    } else if (state == ButtonState::pressed) {
        painter.fillPath(shape, color(style_.accent));
        ink = contrasting(style_.accent);
    }
    painter.fillPath(ring(area, buttonRadius * scale, 0, border), white(borderOpacity));
    painter.fillPath(symbolPath(symbolOf(button), area, symbolSize * scale), ink);
    painter.end();
    if (state == ButtonState::disabled) {
        image = faded(std::move(image), disabledOpacity);
    }
    return shared(style_.isTranslucent ? image : solid(image, shape));
}

void ZoneEditingPainter::paintHelp(Picture& picture, std::string_view text, const PixelRect& button,
                                   const EditingSpace& space) {
    const auto scaled = [&](double points) { return nearestPixel(points * style_.scale); };
    auto& image = helps_[std::string(text)];
    if (!image) {
        image = shared(label(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())),
                             {.font = systemFont(helpSize * style_.scale, QFont::Medium),
                              .horizontalPadding = helpHorizontalPadding * style_.scale,
                              .verticalPadding = helpVerticalPadding * style_.scale,
                              .radius = helpRadius * style_.scale,
                              .opacity = helpOpacity,
                              .isTranslucent = style_.isTranslucent}));
    }
    const int margin = scaled(helpMargin);
    const int mostX = static_cast<int>(space.extent.width) - image->width - margin;
    const int below = button.y + button.height + scaled(helpDistance);
    const bool fitsBelow = below + image->height + margin <= static_cast<int>(space.extent.height);
    picture.tiles.push_back(
        {.image = image,
         .area = {.x = std::max(
                      0, std::min(mostX, std::max(margin, button.x + (button.width - image->width) / 2))),
                  .y = fitsBelow ? below : std::max(0, button.y - scaled(helpMargin) - image->height),
                  .width = image->width,
                  .height = image->height}});
}

} // namespace karto
