#include "Karto/Overlay/ZoneEditingView.h"

#include "Composed.h"
#include "KartoCore/ZoneEditing.h"
#include "Support/Trees.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>

namespace karto::testing {

namespace {

using ::testing::Each;

constexpr Size extent{.width = 800, .height = 600};
constexpr std::array scales{1.0, 1.5, 2.0};
const NodePath left{.branches = {Branch::first}};
const NodePath right{.branches = {Branch::second}};
// Boundaries at x = 400 and, right of it, at y = 150.
const LayoutNode three = columns(0.5, zone(), rows(0.25, zone(), zone()));

StageStyle style(double scale, bool isTranslucent = true) {
    return {.scale = scale, .accent = {.red = 0, .green = 1, .blue = 0}, .isTranslucent = isTranslucent};
}

ZoneEditingView viewOf(const LayoutNode& root) {
    ZoneEditingView view;
    view.root = root;
    return view;
}

Picture paint(const ZoneEditingView& view, const StageStyle& style) {
    Picture picture;
    ZoneEditingPainter(style).paint(picture, view, extent);
    return picture;
}

QImage painted(const ZoneEditingView& view, const StageStyle& style) {
    return composed(paint(view, style), {int(extent.width), int(extent.height)});
}

// The part of the picture that lies in the area.
QImage painted(const ZoneEditingView& view, const StageStyle& style, const PixelRect& area) {
    return painted(view, style).copy(rectOf(area));
}

PixelRect buttonArea(ZoneButton button, const NodePath& zone, double scale) {
    const auto zones = three.zones(NormRect::full());
    const auto found = std::ranges::find(zones, zone, &TreeZone::path);
    return ZoneButtons::area(button, found->rect, {.extent = extent, .scale = scale});
}

} // namespace

TEST(ZoneEditingView, stripsHaveTheirColoursAndWidthsAndNoneIsBrighterWhereTheyMeet) {
    for (const double scale : scales) {
        // The first pixel of a strip along a line, and the first one after it.
        const auto firstOf = [&](int line) { return nearestPixel(line - 5 * scale); };
        const auto endOf = [&](int line) { return nearestPixel(line + 5 * scale); };
        for (const bool isHot : {false, true}) {
            ZoneEditingView view = viewOf(three);
            if (isHot) {
                view.hot = right;
            }
            const auto image = painted(view, style(scale));
            const int faint = 38;
            const int marked = 191;
            const auto expectAlpha = [&](int x, int y, int alpha) {
                EXPECT_NEAR(qAlpha(image.pixel(x, y)), alpha, 1) << x << ", " << y << " at " << scale;
            };
            for (const int x : {firstOf(400), 400, endOf(400) - 1}) {
                expectAlpha(x, 0, faint);
                expectAlpha(x, 599, faint);
            }
            expectAlpha(firstOf(400) - 1, 300, 0);
            expectAlpha(endOf(400), 300, 0);
            // The inner strip is whole when it is marked, else it ends at the outer one.
            expectAlpha(endOf(400) - 1, 150, isHot ? marked : faint);
            for (const int y : {firstOf(150), endOf(150) - 1}) {
                expectAlpha(799, y, isHot ? marked : faint);
            }
            expectAlpha(799, firstOf(150) - 1, 0);
            expectAlpha(799, endOf(150), 0);
            EXPECT_EQ(qRed(image.pixel(700, 150)) == 0, isHot);
        }
    }
}

TEST(ZoneEditingView, buttonsAreDrawnWhereTheyArePressed) {
    for (const double scale : scales) {
        const ZoneEditingView plain = viewOf(three);
        ZoneEditingView view = plain;
        view.buttonsFor = left;
        const auto before = painted(plain, style(scale));
        const auto after = painted(view, style(scale));
        QRect changed;
        for (int y = 0; y < after.height(); ++y) {
            for (int x = 0; x < after.width(); ++x) {
                changed |= before.pixel(x, y) != after.pixel(x, y) ? QRect(x, y, 1, 1) : QRect();
            }
        }
        EXPECT_EQ(changed, rectOf(buttonArea(ZoneButton::splitIntoColumns, left, scale)) |
                               rectOf(buttonArea(ZoneButton::remove, left, scale)));
        EXPECT_EQ(changed.size(), QSize(qRound(100 * scale), qRound(28 * scale)));
    }
}

TEST(ZoneEditingView, straightLinesOfSymbolsAreSharpAndInTheMiddle) {
    for (const double scale : scales) {
        ZoneEditingView view = viewOf(three);
        view.buttonsFor = left;
        for (const auto button : {ZoneButton::splitIntoColumns, ZoneButton::splitIntoRows}) {
            const auto image = painted(view, style(scale), buttonArea(button, left, scale));
            // Across the divider, through the middle of one half.
            const int side = image.width();
            const bool isColumns = button == ZoneButton::splitIntoColumns;
            std::vector<int> inks;
            for (int i = qRound(5 * scale); i < side - qRound(5 * scale); ++i) {
                const int aside = side / 2 - qRound(3 * scale);
                inks.push_back(qRed(isColumns ? image.pixel(i, aside) : image.pixel(aside, i)));
            }
            EXPECT_THAT(inks, Each(::testing::AnyOf(0, 255))) << scale;
            EXPECT_EQ(inks[inks.size() / 2], 255) << scale;
            const auto firstInk = std::ranges::find(inks, 255) - inks.begin();
            std::ranges::reverse(inks);
            const auto lastInk = std::ranges::find(inks, 255) - inks.begin();
            EXPECT_LE(std::abs(firstInk - lastInk), 1) << scale;
        }
    }
}

TEST(ZoneEditingView, buttonsLookAsTheyAre) {
    const auto look = [](const ZoneEditingView& view, ZoneButton button, bool isTranslucent = true) {
        return painted(view, style(1, isTranslucent), buttonArea(button, left, 1));
    };
    ZoneEditingView view = viewOf(three);
    view.buttonsFor = left;
    const auto plain = look(view, ZoneButton::remove);
    EXPECT_NEAR(plain.pixelColor(4, 14).alphaF(), 0.8, 0.01);
    view.pointedAt = ZoneButton::remove;
    const auto pointedAt = look(view, ZoneButton::remove);
    EXPECT_NE(plain, pointedAt);
    view.isPressed = true;
    EXPECT_EQ(look(view, ZoneButton::remove).pixelColor(4, 14), QColor(Qt::green));
    EXPECT_EQ(look(view, ZoneButton::splitIntoRows).pixelColor(4, 14).alpha(),
              plain.pixelColor(4, 14).alpha());

    ZoneEditingView only = viewOf(zone());
    only.buttonsFor = NodePath();
    only.pointedAt = ZoneButton::remove;
    const auto middle = ZoneButtons::area(ZoneButton::remove, NormRect::full(), {.extent = extent});
    const auto disabled = painted(only, style(1), middle);
    EXPECT_NEAR(disabled.pixelColor(4, 14).alphaF(), 0.8 * 0.35, 0.01);
}

TEST(ZoneEditingView, theReadoutStaysOnTheDisplayAndItsDigitsDoNotMove) {
    for (const double scale : scales) {
        ZoneEditingView view = viewOf(columns(0.3, zone(), zone()));
        view.dragging = view.hot = NodePath();
        const auto readoutAt = [&](Point pointer) {
            view.pointer = pointer;
            return paint(view, style(scale)).tiles.back();
        };
        const auto middle = readoutAt({400, 300});
        EXPECT_LE(std::abs(2 * middle.area.x + middle.area.width - 800), 1);
        EXPECT_LE(std::abs(2 * middle.area.y + middle.area.height - 2 * (300 - int(34 * scale))), 1);
        for (const Point corner : {Point{0, 0}, Point{799, 599}, Point{-90, 900}}) {
            EXPECT_TRUE(QRect(0, 0, 800, 600).contains(rectOf(readoutAt(corner).area)));
        }
        // 11% and 88, 58 or 44 points; 12% and 96, 64 or 48.
        view.root = columns(0.11, zone(), zone());
        const auto ones = readoutAt({400, 300}).image->width;
        view.root = columns(0.08, zone(), zone());
        EXPECT_LT(readoutAt({400, 300}).image->width, ones);
        view.root = columns(0.12, zone(), zone());
        EXPECT_EQ(readoutAt({400, 300}).image->width, ones);
    }
}

TEST(ZoneEditingView, helpStaysOnTheDisplay) {
    for (const double scale : scales) {
        for (const double at : {0.31, 0.69}) {
            for (const LayoutNode& root : {columns(at, zone(), zone()), rows(at, zone(), zone())}) {
                for (const auto& path : {left, right}) {
                    ZoneEditingView view = viewOf(root);
                    view.buttonsFor = path;
                    view.pointedAt = ZoneButton::remove;
                    view.showsHelp = true;
                    const auto help = paint(view, style(scale)).tiles.back();
                    EXPECT_GT(help.area.width, 100);
                    EXPECT_TRUE(QRect(0, 0, 800, 600).contains(rectOf(help.area)));
                }
            }
        }
    }
}

TEST(ZoneEditingView, withoutTranslucencyPixelsAreOpaqueOrCutOut) {
    ZoneEditingView hovered = viewOf(three);
    hovered.buttonsFor = right.appending(Branch::second);
    hovered.pointedAt = ZoneButton::splitIntoRows;
    hovered.showsHelp = true;
    ZoneEditingView dragged = viewOf(three);
    dragged.dragging = dragged.hot = right;
    dragged.pointer = {500, 150};
    for (const double scale : scales) {
        for (const auto& view : {hovered, dragged}) {
            EXPECT_TRUE(isOpaqueOrClear(painted(view, style(scale, false))));
        }
    }
}

TEST(ZoneEditingView, whatDidNotChangeIsNotPaintedAgain) {
    ZoneEditingPainter painter(style(1));
    const auto tiles = [&](const ZoneEditingView& view) {
        Picture picture;
        painter.paint(picture, view, extent);
        return picture.tiles;
    };
    ZoneEditingView view = viewOf(three);
    view.buttonsFor = left;
    const auto before = tiles(view);
    view.pointedAt = ZoneButton::remove;
    const auto after = tiles(view);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = before.size() - 3; i < before.size(); ++i) {
        EXPECT_EQ(before[i].image == after[i].image, i + 1 < before.size());
    }
}

} // namespace karto::testing
