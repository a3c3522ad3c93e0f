#include "Karto/Platform/X11/Stage/PaintPlan.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <variant>

namespace karto::x11 {

namespace {

constexpr int width = 12;
constexpr int height = 10;

Pixel over(Pixel above, Pixel below) {
    Pixel result = 0;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        const auto channel =
            (above >> shift & 0xFF) + (below >> shift & 0xFF) * (0xFF - (above >> 24)) / 0xFF;
        result |= std::min(channel, 0xFFU) << shift;
    }
    return result;
}

std::size_t position(int x, int y, int columns) {
    return std::size_t(y) * std::size_t(columns) + std::size_t(x);
}

// A window in memory.
class Canvas {
public:
    explicit Canvas(Pixel background = 0)
        : pixels_(position(0, height, width), background) {}

    void paint(const PixelRect& area, Blend blend, const Image& image) {
        for (int y = std::max(area.y, 0); y < std::min(area.y + area.height, height); ++y) {
            for (int x = std::max(area.x, 0); x < std::min(area.x + area.width, width); ++x) {
                auto& pixel = pixels_[position(x, y, width)];
                const auto source = image.pixels[position((x - area.x) % image.width,
                                                          (y - area.y) % image.height, image.width)];
                pixel = blend == Blend::replace ? source : over(source, pixel);
            }
        }
    }

    bool operator==(const Canvas&) const = default;

private:
    std::vector<Pixel> pixels_;
};

Canvas painted(const Picture& picture) {
    Canvas canvas;
    for (const auto& tile : picture.tiles) {
        canvas.paint(tile.area, Blend::over, *tile.image);
    }
    return canvas;
}

Canvas painted(const PaintPlan& plan) {
    Canvas canvas(plan.background);
    for (const auto& step : plan.steps) {
        const auto* even = std::get_if<Pixel>(&step.paint);
        const auto image = even != nullptr ? Image{.width = 1, .height = 1, .pixels = {*even}}
                                           : *std::get<std::shared_ptr<const Image>>(step.paint);
        for (const auto& area : step.areas) {
            canvas.paint(area, step.blend, image);
        }
    }
    return canvas;
}

// The whole range from the first case on.
int within(int least, int end) { return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(least, end)); }

std::shared_ptr<const Image> anyImage() {
    const int columns = *rc::gen::element(1, 1, 1, 2, 3);
    const int rows = *rc::gen::element(1, 1, 1, 2, 3);
    const auto pixel = rc::gen::element<Pixel>(0, 0x2E000000, 0x80008000, 0xFF0000FF);
    return std::make_shared<const Image>(
        Image{.width = columns,
              .height = rows,
              .pixels = *rc::gen::container<std::vector<Pixel>>(position(0, rows, columns), pixel)});
}

Picture anyPicture() {
    Picture picture;
    for (int count = within(0, 8); count > 0; --count) {
        picture.tiles.push_back({.image = anyImage(),
                                 .area = {.x = within(-2, width / 2),
                                          .y = within(-2, height / 2),
                                          .width = *rc::gen::element(0, 3, 7, width + 2),
                                          .height = *rc::gen::element(0, 2, 6, height + 2)}});
    }
    return picture;
}

} // namespace

RC_GTEST_PROP(PaintPlan, aPlanPaintsWhatThePictureShows, ()) {
    const auto picture = anyPicture();
    RC_ASSERT(painted(planPainting(picture, width, height, Background::prevailing)) == painted(picture));
    RC_ASSERT(painted(planPainting(picture, width, height, Background::transparent)) == painted(picture));
}

RC_GTEST_PROP(PaintPlan, theOpaqueAreaIsWhereATileIsAtLeastHalfOpaque, ()) {
    const auto picture = anyPicture();
    Canvas wanted;
    for (const auto& tile : picture.tiles) {
        Image mask = *tile.image;
        std::ranges::for_each(mask.pixels, [](Pixel& pixel) { pixel = pixel >> 31 != 0 ? 0xFFFFFFFF : 0; });
        wanted.paint(tile.area, Blend::over, mask);
    }
    Canvas actual;
    for (const auto& area : opaqueArea(picture)) {
        actual.paint(area, Blend::replace, {.width = 1, .height = 1, .pixels = {0xFFFFFFFF}});
    }
    RC_ASSERT(actual == wanted);
}

TEST(PaintPlan, theBackgroundOfMostOfTheWindowCostsNothing) {
    const auto fill = std::make_shared<const Image>(Image{.width = 1, .height = 1, .pixels = {0x2E000000}});
    const auto edge = std::make_shared<const Image>(Image{.width = 1, .height = 1, .pixels = {0x4D4D4D4D}});
    const Picture picture{.tiles = {{.image = fill, .area = {.x = 0, .y = 0, .width = 6, .height = 9}},
                                    {.image = fill, .area = {.x = 6, .y = 0, .width = 6, .height = 9}},
                                    {.image = edge, .area = {.x = 0, .y = 9, .width = 12, .height = 1}},
                                    {.image = fill, .area = {.x = 1, .y = 1, .width = 2, .height = 2}}}};
    const auto plan = planPainting(picture, width, height, Background::prevailing);
    EXPECT_EQ(plan.background, 0x2E000000);
    ASSERT_EQ(plan.steps.size(), 2U);
    EXPECT_EQ(plan.steps[0].paint, Paint(Pixel{0x4D4D4D4D}));
    EXPECT_EQ(plan.steps[1].areas, std::vector{picture.tiles[3].area});
}

} // namespace karto::x11
