#include "Karto/Switcher/SwitcherPanelView.h"

#include "Composed.h"
#include "KartoCore/SwitcherPanelLayout.h"

#include <gtest/gtest.h>

#include <array>

namespace karto::testing {

namespace {

SwitcherPanelView panelOf(int rowCount) {
    SwitcherPanelView view;
    for (int i = 0; i < rowCount; ++i) {
        view.rows.push_back({.id = i, .icon = {}, .appName = "Editor", .title = "notes.txt"});
    }
    return view;
}

QImage rowImage(const std::string& name, const std::string& title) {
    const auto picture =
        SwitcherPainter().paint({.rows = {{.icon = {}, .appName = name, .title = title}}}, {});
    return drawing::view(*picture.tiles.back().image).copy();
}

} // namespace

TEST(SwitcherPanelView, thePictureHasTheSizeOfThePanel) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        for (const int count : {1, 2, 7}) {
            const auto panel = SwitcherPanelLayout::frame(count, {}, {.width = 5000, .height = 5000});
            const auto picture = SwitcherPainter().paint(panelOf(count), {.scale = scale});
            EXPECT_EQ(boundsOf(picture),
                      QRect(0, 0, qRound(panel.width * scale), qRound(panel.height * scale)));
        }
    }
}

TEST(SwitcherPanelView, theSelectionKeepsWithinThePanelAndPaintsNoRowAgain) {
    for (const bool isTranslucent : {true, false}) {
        const StageStyle style{.accent = {.red = 1, .green = 0, .blue = 0}, .isTranslucent = isTranslucent};
        SwitcherPainter painter;
        auto view = panelOf(2);
        const auto first = painter.paint(view, style);
        view.selected = 1;
        const auto second = painter.paint(view, style);
        EXPECT_EQ(first.tiles.back().image, second.tiles.back().image);
        view.selected = -1;
        const auto bounds = boundsOf(first).size();
        const auto plain = composed(painter.paint(view, style), bounds);
        for (const auto& image : {composed(first, bounds), composed(second, bounds)}) {
            EXPECT_EQ(isOpaqueOrClear(image), !isTranslucent);
            for (int y = 0; y < image.height(); ++y) {
                EXPECT_TRUE(qAlpha(plain.pixel(0, y)) > 0 || qAlpha(image.pixel(0, y)) == 0) << y;
            }
        }
        const auto selected = composed(first, bounds).pixelColor(5, 25);
        EXPECT_NEAR(selected.alphaF(), isTranslucent ? 0.91 : 1, 0.01);
        EXPECT_NEAR(selected.redF(), isTranslucent ? 0.55 / 0.91 : 0.55 + 0.45 * 0.1, 0.02);
    }
}

TEST(SwitcherPanelView, moreRowsAreMarkedInThePaddingAlone) {
    for (const double scale : {1.0, 1.25, 2.0}) {
        auto view = panelOf(3);
        const auto size = boundsOf(SwitcherPainter().paint(view, {.scale = scale})).size();
        const int padding = qRound(SwitcherPanelLayout::verticalPadding * scale);
        const auto parts = [&] {
            const auto image = composed(SwitcherPainter().paint(view, {.scale = scale}), size);
            return std::array{image.copy(0, 0, size.width(), padding),
                              image.copy(0, padding, size.width(), size.height() - 2 * padding),
                              image.copy(0, size.height() - padding, size.width(), padding)};
        };
        const auto plain = parts();
        view.continuesAbove = true;
        const auto below = parts();
        view.continuesBelow = true;
        const auto within = parts();
        EXPECT_NE(below[0], plain[0]);
        EXPECT_EQ(below[2], plain[2]);
        EXPECT_EQ(within[0], below[0]);
        EXPECT_NE(within[2], plain[2]);
        EXPECT_EQ(within[1], plain[1]);
    }
}

TEST(SwitcherPanelView, longTitlesLoseTheirMiddleAndLongNamesLeaveRoomForThem) {
    const std::string filler(300, 'o');
    const auto whole = rowImage("Editor", "Start " + filler + " end");
    EXPECT_EQ(whole, rowImage("Editor", "Start " + filler + filler + " end"));
    EXPECT_NE(whole, rowImage("Editor", "Other " + filler + " end"));
    EXPECT_NE(whole, rowImage("Editor", "Start " + filler + " fin"));
    EXPECT_NE(rowImage(filler, "one"), rowImage(filler, "two"));
    for (const auto& image : {whole, rowImage(filler, filler)}) {
        const int padding = 12;
        EXPECT_EQ(image.copy(image.width() - padding, 0, padding, image.height()),
                  drawing::canvas({padding, image.height()}));
    }
}

} // namespace karto::testing
