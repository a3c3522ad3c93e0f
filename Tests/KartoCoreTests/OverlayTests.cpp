#include "KartoCore/OverlayAppearance.h"
#include "KartoCore/OverlayDecision.h"
#include "KartoCore/OverlayLayout.h"

#include <gtest/gtest.h>

namespace karto {

namespace {

TEST(RGBColor, readsBothCasesAndWritesUpperCase) {
    EXPECT_EQ(RGBColor::fromHex("#ffFFff"), RGBColor::white());
    EXPECT_EQ(RGBColor::fromHex("#ff8000"), (RGBColor{.red = 1, .green = 128 / 255.0, .blue = 0}));
    EXPECT_EQ(RGBColor::fromHex("#a0b1c9")->hex(), "#A0B1C9");
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

    struct Row {
        ModifierSet held;
        ModifierSet configured;
        OverlayGate::State state;
        OverlayDecision decision;
    };

    const Row rows[] = {
        {hyper, hyper, {.isShowing = false, .delayElapsed = false}, armDelay},
        {hyper, hyper, {.isShowing = false, .delayElapsed = true}, show},
        {hyper, hyper, {.isShowing = true, .delayElapsed = false}, doNothing},
        {hyper, hyper, {.isShowing = true, .delayElapsed = true}, doNothing},
        {more, hyper, {.isShowing = true, .delayElapsed = false}, hide},
        {ModifierSet::command, hyper, {.isShowing = true, .delayElapsed = true}, hide},
        {{}, hyper, {.isShowing = false, .delayElapsed = true}, doNothing},
        {{}, {}, {.isShowing = false, .delayElapsed = true}, doNothing},
        {{}, {}, {.isShowing = true, .delayElapsed = false}, hide},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(OverlayGate::decide(row.held, row.configured, row.state), row.decision) << &row - rows;
    }
}

TEST(OverlayLayout, showsTheZonesOfEachDisplayOrSaysWhyNot) {
    const Rect wide{.x = 0, .y = 0, .width = 800, .height = 600};
    const Rect tall{.x = 800, .y = 0, .width = 600, .height = 800};
    const Rect left{.x = 0, .y = 0, .width = 400, .height = 600};
    const std::vector<DisplayInfo> displays{{"A", wide}, {"A", tall}, {"A", wide}, {"", wide}, {"B", wide}};
    const std::vector<ResolvedZone> ring{{2, "A", Orientation::landscape, left},
                                         {5, "A", Orientation::landscape, wide}};

    const auto screens = OverlayLayout::build(ring, displays, 7, std::nullopt);

    const OverlayZones zones{{.number = 2, .rect = left}, {.number = 5, .rect = wide}};
    const auto none = [](const std::string& name) {
        return "No zones for \"" + name +
               "\". The config has 7 zone(s), none of them bound to this display in its current orientation.";
    };
    const std::vector<OverlayScreen> expected{
        {displays[0], zones},
        {displays[1], none("A")},
        {displays[2], zones},
        {displays[3], "This display reports no name, so no zones can be bound to it. "
                      "Karto matches zones by display name."},
        {displays[4], none("B")},
    };
    EXPECT_EQ(screens, expected);
}

TEST(OverlayLayout, aConfigurationErrorTakesThePlaceOfEverything) {
    const DisplayInfo display{"A", {.x = 0, .y = 0, .width = 8, .height = 6}};
    const std::vector<ResolvedZone> ring{{1, "A", Orientation::landscape, display.frame}};
    const auto screens = OverlayLayout::build(ring, std::vector{display}, 1, "config has no displays");
    EXPECT_EQ(screens, (std::vector<OverlayScreen>{{display, "Config error: config has no displays"}}));
}

} // namespace

} // namespace karto
