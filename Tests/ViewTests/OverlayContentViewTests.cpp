#include "Karto/Overlay/OverlayContentView.h"

#include "Composed.h"
#include "Support/Trees.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>

namespace karto::testing {

namespace {

using ::testing::Each;

constexpr RGBColor red{.red = 1, .green = 0, .blue = 0};

OverlayContentView zonesOn(const Rect& frame, OverlayZones zones) {
    return {.content = std::move(zones), .displayFrame = frame, .appearance = {.color = red}, .editing = {}};
}

// Of the figures alone: their halo has no colour.
QRect inkOf(const PictureTile& tile) {
    const auto image = drawing::view(*tile.image);
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qRed(image.pixel(x, y)) > 0) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink.translated(tile.area.x, tile.area.y);
}

void expectPixel(const QImage& image, QPoint at, const QColor& color) {
    const auto seen = image.pixelColor(at);
    const std::array differences{seen.red() - color.red(), seen.green() - color.green(),
                                 seen.blue() - color.blue(), seen.alpha() - color.alpha()};
    EXPECT_THAT(differences, Each(::testing::AllOf(::testing::Ge(-3), ::testing::Le(3))))
        << at.x() << ',' << at.y() << ": " << seen.name(QColor::HexArgb).toStdString();
}

} // namespace

RC_GTEST_PROP(OverlayContentView, zonesMeetWithoutGapOrOverlapAtAnyScale, ()) {
    static OverlayPainter painter;
    const double width = *rc::gen::inRange(1, 300);
    const Rect frame{.x = *rc::gen::element(0.0, -1279.0, 77.0),
                     .y = 31,
                     .width = width,
                     .height = std::ceil(width * *rc::gen::inRange(1, 9) / 8)};
    const StageStyle style{.scale = *rc::gen::element(1.0, 1.5, 2.0)};
    std::vector<int> covered(static_cast<std::size_t>(frame.area()));
    for (const auto& zone : ringOf(*trees(), frame)) {
        auto picture = painter.paint(zonesOn(frame, {{.number = 1, .rect = zone.rect}}), style);
        if (!picture.tiles.empty()) {
            picture.tiles.pop_back(); // the number
        }
        for (const auto& tile : picture.tiles) {
            RC_ASSERT(QRectF(0, 0, frame.width, frame.height).toRect().contains(rectOf(tile.area)));
            for (int y = tile.area.y; y < tile.area.y + tile.area.height; ++y) {
                const auto row =
                    covered.begin() + std::ptrdiff_t{y} * static_cast<int>(frame.width) + tile.area.x;
                std::for_each_n(row, tile.area.width, [](int& count) { ++count; });
            }
        }
    }
    RC_ASSERT(std::ranges::all_of(covered, [](int count) { return count == 1; }));
}

TEST(OverlayContentView, neighboursMeetWhereRoundingErrorsPartThem) {
    const auto frame = rectAt(0, 0, 3900, 90);
    const auto ring = ringOf(columns(0.7, zone(), columns(0.25, zone(), zone())), frame);
    ASSERT_LT(ring[2].rect.x, ring[1].rect.maxX());
    const auto left = OverlayPainter().paint(zonesOn(frame, {{.rect = ring[1].rect}}), {});
    const auto right = OverlayPainter().paint(zonesOn(frame, {{.rect = ring[2].rect}}), {});
    EXPECT_EQ(boundsOf(left).right() + 1, boundsOf(right).left());
}

TEST(OverlayContentView, numbersAreCentredByTheirInkAndFitTheirZones) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        for (const double size : {8.0, 64.0, 240.0}) {
            for (const auto& zone : {rectAt(3, 5, 20, 20), rectAt(0, 0, 21, 37), rectAt(9, 0, 300, 101),
                                     rectAt(40, 7, 1000, 999)}) {
                for (const int number : {1, 7, 10, 88}) {
                    auto view = zonesOn(rectAt(0, 0, 1200, 1200), {{.number = number, .rect = zone}});
                    view.appearance.numberSize = size;
                    const auto picture = OverlayPainter().paint(view, {.scale = scale});
                    const QRectF ink(inkOf(picture.tiles.back()));
                    const QRectF area(zone.x, zone.y, zone.width, zone.height);
                    SCOPED_TRACE(::testing::Message() << number << " of " << size << " at " << scale);
                    EXPECT_TRUE(area.contains(ink));
                    EXPECT_LE(std::abs(ink.center().x() - area.center().x()), 0.5);
                    EXPECT_LE(std::abs(ink.center().y() - area.center().y()), 0.5);
                    const double wanted =
                        std::min({0.65 * size * scale, area.height() / 3, area.width() / 4});
                    EXPECT_GE(ink.height(), std::floor(wanted));
                }
            }
        }
    }
}

TEST(OverlayContentView, coloursAndWidthsOfZonesAreExact) {
    const RGBColor green{.red = 0, .green = 1, .blue = 0};
    auto view = zonesOn(rectAt(0, 0, 400, 200),
                        {{.number = 1, .rect = rectAt(0, 0, 200, 200)},
                         {.number = 2, .rect = rectAt(200, 0, 200, 200), .isSelected = true}});
    const auto image = composed(OverlayPainter().paint(view, {.scale = 2, .accent = green}), {400, 200});
    const auto fill = QColor::fromRgbF(0, 0, 0, 0.18F);
    const auto border = QColor::fromRgbF(0.3F / 0.426F, 0, 0, 0.426F);
    for (const int x : {0, 2}) {
        expectPixel(image, {x, 100}, border);
        expectPixel(image, {199 - x, 60}, border);
    }
    for (const int x : {200, 205, 394, 399}) {
        expectPixel(image, {x, 100}, Qt::green);
    }
    for (const int x : {10, 20, 180, 220, 380}) {
        expectPixel(image, {x, 30}, fill);
    }
    expectPixel(image, {0, 0}, Qt::transparent);
}

TEST(OverlayContentView, messagesStayOnTheirDisplays) {
    const std::string longMessage(2000, 'm');
    for (const std::string& message :
         {std::string("Config error: no"), longMessage, longMessage + " and\nmore"}) {
        for (const QSize size : {QSize(1920, 1080), QSize(300, 200), QSize(160, 120)}) {
            for (const double scale : {1.0, 2.0}) {
                const OverlayContentView view{.content = message,
                                              .displayFrame = rectAt(0, 0, size.width(), size.height()),
                                              .appearance = {},
                                              .editing = {}};
                const auto bounds = boundsOf(OverlayPainter().paint(view, {.scale = scale}));
                EXPECT_TRUE(QRect({0, 0}, size).contains(bounds));
                EXPECT_LE(bounds.width(), 640 * scale);
                EXPECT_LE(std::abs(bounds.center().x() - size.width() / 2), 1);
                EXPECT_LE(std::abs(bounds.center().y() - size.height() / 2), 1);
            }
        }
    }
}

TEST(OverlayContentView, withoutTranslucencyPixelsAreOpaqueOrCutOut) {
    const auto frame = rectAt(0, 0, 500, 300);
    const auto zones = zonesOn(frame, {{.number = 8, .rect = rectAt(0, 0, 250, 300)},
                                       {.number = 9, .rect = rectAt(250, 0, 20, 300), .isSelected = true},
                                       {.number = 10, .rect = rectAt(270, 0, 230, 300)}});
    const OverlayContentView message{
        .content = "No zones", .displayFrame = frame, .appearance = {}, .editing = {}};
    for (const double scale : {1.0, 1.5}) {
        const StageStyle style{.scale = scale, .isTranslucent = false};
        const auto image = composed(OverlayPainter().paint(zones, style), {500, 300});
        EXPECT_TRUE(isOpaqueOrClear(image));
        expectPixel(image, {20, 150}, Qt::transparent);
        expectPixel(image, {0, 150}, Qt::red);
        EXPECT_TRUE(isOpaqueOrClear(composed(OverlayPainter().paint(message, style), {500, 300})));
    }
}

TEST(OverlayContentView, equalPartsShareTheirImages) {
    OverlayPainter painter;
    const auto view = zonesOn(rectAt(0, 0, 400, 200), {{.number = 1, .rect = rectAt(0, 0, 200, 200)},
                                                       {.number = 2, .rect = rectAt(200, 0, 200, 200)}});
    const auto first = painter.paint(view, {});
    const auto again = painter.paint(view, {});
    ASSERT_EQ(first.tiles.size(), again.tiles.size());
    EXPECT_TRUE(std::ranges::equal(first.tiles, again.tiles, {}, &PictureTile::image, &PictureTile::image));
    EXPECT_EQ(first.tiles.front().image, first.tiles[first.tiles.size() / 2].image);
    const auto larger = painter.paint(view, {.scale = 2});
    EXPECT_NE(first.tiles.back().image->height, larger.tiles.back().image->height);
}

} // namespace karto::testing
