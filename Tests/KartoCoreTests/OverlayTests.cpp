#include "KartoCore/OverlayAppearance.h"
#include "KartoCore/OverlayDecision.h"
#include "KartoCore/OverlayLayout.h"
#include "KartoCore/SwitcherPanelLayout.h"
#include "Support/Trees.h"

#include <gtest/gtest.h>

#include <tuple>

namespace karto {

namespace {

using testing::rectAt;

ResolvedZone resolved(int order, const Rect& rect) {
    return {.order = order, .display = "A", .orientation = Orientation::landscape, .rect = rect};
}

TEST(RGBColor, readsBothCasesAndWritesUpperCase) {
    EXPECT_EQ(RGBColor::fromHex("#ffFFff"), RGBColor::white());
    EXPECT_EQ(RGBColor::fromHex("#ff8000"), (RGBColor{.red = 1, .green = 128 / 255.0, .blue = 0}));
    EXPECT_EQ(RGBColor::fromHex("#a0b1c9").value_or(RGBColor::white()).hex(), "#A0B1C9");
    EXPECT_EQ((RGBColor{.red = 0.5, .green = 0.5, .blue = 0.5}.hex()), "#808080");
    for (const std::string_view text :
         {"FFFFFF", "#FFF", "#FFFFFFF", "#FFFFFG", "#FFF FF", "", "#FFF\uFF21"}) {
        EXPECT_EQ(RGBColor::fromHex(text), std::nullopt) << text;
    }
}

TEST(OverlayGate, decidesByExactlyTheConfiguredModifiers) {
    using enum OverlayDecision;
    const ModifierSet hyper = ModifierSet::command | ModifierSet::option;
    const ModifierSet more = hyper | ModifierSet::shift;

    const std::vector<std::tuple<ModifierSet, ModifierSet, OverlayGate::State, OverlayDecision>> table{
        {hyper, hyper, {.isShowing = false, .delayElapsed = false}, armDelay},
        {hyper, hyper, {.isShowing = false, .delayElapsed = true}, show},
        {hyper, hyper, {.isShowing = true, .delayElapsed = true}, doNothing},
        {more, hyper, {.isShowing = true, .delayElapsed = false}, hide},
        {ModifierSet::command, hyper, {.isShowing = true, .delayElapsed = true}, hide},
        {{}, hyper, {.isShowing = false, .delayElapsed = true}, doNothing},
        {{}, {}, {.isShowing = false, .delayElapsed = true}, doNothing},
        {{}, {}, {.isShowing = true, .delayElapsed = false}, hide},
    };
    for (const auto& [held, configured, state, decision] : table) {
        EXPECT_EQ(OverlayGate::decide(held, configured, state), decision)
            << held.glyphs() << " of " << configured.glyphs() << state.isShowing << state.delayElapsed;
    }
}

TEST(OverlayLayout, showsTheZonesOfEachDisplayOrSaysWhyNot) {
    const Rect wide = rectAt(0, 0, 800, 600);
    const Rect left = rectAt(0, 0, 400, 600);
    const auto display = [](std::string name, const Rect& frame) {
        return DisplayInfo{.name = std::move(name), .frame = frame};
    };
    const std::vector<DisplayInfo> displays{display("A", wide), display("A", rectAt(800, 0, 600, 800)),
                                            display("A", wide), display("", wide), display("B", wide)};
    const std::vector<ResolvedZone> ring{resolved(2, left), resolved(5, wide)};

    const auto screens = OverlayLayout::build(ring, displays, 7, std::nullopt);

    const OverlayZones zones{{.number = 2, .rect = left}, {.number = 5, .rect = wide}};
    const auto none = [](const std::string& name) {
        return "No zones for \"" + name +
               "\". The config has 7 zone(s), none of them bound to this display in its current orientation.";
    };
    const OverlayMessage noName = "This display reports no name, so no zones can be bound to it. "
                                  "Karto matches zones by display name.";
    const std::vector<OverlayScreenContent> expected{zones, none("A"), zones, noName, none("B")};
    ASSERT_EQ(screens.size(), displays.size());
    for (std::size_t i = 0; i < screens.size(); ++i) {
        EXPECT_EQ(screens[i].display, displays[i]);
        EXPECT_EQ(screens[i].content, expected[i]) << i;
    }
}

TEST(SwitcherPanelLayout, theRowsShownFitTheDisplayAndMoveNoFurtherThanTheSelectedOneTakes) {
    const auto shown = [](int selected, int first, double displayHeight, int rowCount = 10) {
        const auto [from, count] =
            SwitcherPanelLayout::shownRows(rowCount, selected, first, rectAt(0, 0, 1000, displayHeight));
        return std::pair(from, count);
    };
    EXPECT_EQ(shown(9, 0, 356), std::pair(0, 10));
    EXPECT_EQ(shown(8, 0, 355), std::pair(0, 9));
    EXPECT_EQ(shown(9, 0, 355), std::pair(1, 9));
    EXPECT_EQ(shown(5, 4, 118), std::pair(4, 3));
    EXPECT_EQ(shown(7, 4, 118), std::pair(5, 3));
    EXPECT_EQ(shown(0, 7, 118), std::pair(0, 3));
    // A display that has grown.
    EXPECT_EQ(shown(8, 7, 186), std::pair(5, 5));
    EXPECT_EQ(shown(3, 0, 20), std::pair(3, 1));
    EXPECT_EQ(shown(1, 1, 2000, 2), std::pair(0, 2));
}

} // namespace

} // namespace karto
