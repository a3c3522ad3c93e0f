#include "Karto/Platform/X11/Stage/PaintPlan.h"
#include "Karto/Platform/X11/Stage/PictureDamage.h"
#include "KartoCore/PixelArea.h"

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

    void paint(const PixelRect& area, Blend blend, const Image& image, int imageX = 0, int imageY = 0) {
        for (int y = std::max(area.y, 0); y < std::min(area.y + area.height, height); ++y) {
            for (int x = std::max(area.x, 0); x < std::min(area.x + area.width, width); ++x) {
                auto& pixel = pixels_[position(x, y, width)];
                const auto source = image.pixels[position((x - area.x + imageX) % image.width,
                                                          (y - area.y + imageY) % image.height, image.width)];
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

Image imageOf(const Paint& paint) {
    const auto* even = std::get_if<Pixel>(&paint);
    return even != nullptr ? Image{.width = 1, .height = 1, .pixels = {*even}}
                           : *std::get<std::shared_ptr<const Image>>(paint);
}

void paint(Canvas& canvas, const PaintPlan& plan) {
    for (const auto& step : plan.steps) {
        for (const auto& [area, imageX, imageY] : step.areas) {
            canvas.paint(area, step.blend, imageOf(step.paint), imageX, imageY);
        }
    }
}

Canvas painted(const PaintPlan& plan) {
    Canvas canvas(plan.background);
    paint(canvas, plan);
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
        picture.tiles.push_back(
            {.image = anyImage(),
             .area = {within(-2, width / 2), within(-2, height / 2), *rc::gen::element(0, 3, 7, width + 2),
                      *rc::gen::element(0, 2, 6, height + 2)}});
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

namespace {

// Some tiles of one picture in another one, in its order: changed, moved, gone, and new ones among them.
Picture changed(const Picture& picture) {
    Picture result;
    for (auto tile : picture.tiles) {
        switch (within(0, 8)) {
        case 0: tile.image = anyImage(); break;
        case 1: tile.area.x += within(-2, 3); break;
        case 2: tile.area.height += within(-1, 3); break;
        case 3: result.tiles.push_back({.image = anyImage(), .area = tile.area}); break;
        case 4: continue;
        default: break;
        }
        result.tiles.push_back(tile);
    }
    return result;
}

} // namespace

RC_GTEST_PROP(PictureDamage, repaintingTheDamageTurnsOnePictureIntoTheOther, ()) {
    const auto before = anyPicture();
    const auto after = *rc::gen::element(true, false) ? changed(before) : anyPicture();
    const auto areas = damage(before, after);
    auto canvas = painted(before);
    paint(canvas, cutDown(planPainting(after, width, height, Background::prevailing), areas));
    RC_ASSERT(canvas == painted(after));
    for (const auto& area : areas) {
        RC_ASSERT(common(area, areas) == std::vector{area});
    }
}

TEST(PictureDamage, onlyWhatChangesIsDamaged) {
    const auto fill = std::make_shared<const Image>(Image{.width = 1, .height = 1, .pixels = {0x2E000000}});
    const auto edge = std::make_shared<const Image>(Image{.width = 1, .height = 2, .pixels = {1, 2}});
    const auto figure = std::make_shared<const Image>(Image{.width = 2, .height = 1, .pixels = {3, 4}});
    const Picture before{.tiles = {{.image = fill, .area = {0, 0, 100, 80}},
                                   {.image = edge, .area = {0, 0, 100, 2}},
                                   {.image = fill, .area = {100, 0, 50, 80}},
                                   {.image = figure, .area = {120, 40, 2, 1}}}};
    EXPECT_TRUE(damage(before, before).empty());
    // A boundary moves, and with it one figure of two.
    auto moved = before;
    moved.tiles[0].area.width = moved.tiles[1].area.width = moved.tiles[2].area.x = 103;
    moved.tiles[2].area.width = 47;
    moved.tiles[3].area.x = 121;
    EXPECT_EQ(damage(before, moved),
              (std::vector<PixelRect>{{100, 0, 3, 80}, {120, 40, 2, 1}, {122, 40, 1, 1}}));
    // Something appears among the others, and what is on top goes.
    auto other = before;
    other.tiles.insert(other.tiles.begin() + 1, {.image = figure, .area = {10, 10, 2, 1}});
    other.tiles.pop_back();
    EXPECT_EQ(damage(before, other), (std::vector<PixelRect>{{10, 10, 2, 1}, {120, 40, 2, 1}}));
}

TEST(PaintPlan, theBackgroundOfMostOfTheWindowCostsNothing) {
    const auto fill = std::make_shared<const Image>(Image{.width = 1, .height = 1, .pixels = {0x2E000000}});
    const auto edge = std::make_shared<const Image>(Image{.width = 1, .height = 1, .pixels = {0x4D4D4D4D}});
    const Picture picture{.tiles = {{.image = fill, .area = {0, 0, 6, 9}},
                                    {.image = fill, .area = {6, 0, 6, 9}},
                                    {.image = edge, .area = {0, 9, 12, 1}},
                                    {.image = fill, .area = {1, 1, 2, 2}}}};
    const auto plan = planPainting(picture, width, height, Background::prevailing);
    EXPECT_EQ(plan.background, 0x2E000000);
    ASSERT_EQ(plan.steps.size(), 2U);
    EXPECT_EQ(plan.steps[0].paint, Paint(Pixel{0x4D4D4D4D}));
    EXPECT_EQ(plan.steps[1].areas, (std::vector{PaintedArea{.area = picture.tiles[3].area}}));
}

} // namespace karto::x11
