#include "Support/OverlayFixture.h"
#include "Support/Trees.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr Rect mainFrame = rectAt(0, 25, 1000, 800);
constexpr Rect sideFrame = rectAt(1000, 0, 600, 400);
constexpr ModifierFlags nothing{};
constexpr ModifierFlags hyper{ModifierBits::shift | ModifierBits::control | ModifierBits::option |
                              ModifierBits::command};
constexpr ModifierFlags shift{ModifierBits::shift};

// For example "1 [2]" for two zones with the second selected, and the text of a message.
Picture describe(const OverlayContentView& view, const StageStyle& /*style*/) {
    std::string name;
    if (const auto* message = std::get_if<OverlayMessage>(&view.content)) {
        name = *message;
    } else {
        for (const OverlayZone& zone : std::get<OverlayZones>(view.content)) {
            name += fmt::format(fmt::runtime(zone.isSelected ? "[{}]" : "{}"), zone.number);
        }
    }
    if (view.appearance.color != RGBColor::white()) {
        name += view.appearance.color.hex();
    }
    return pictureNamed(name);
}

Screen panelledScreen(std::string name, const Rect& visibleFrame) {
    return {.name = std::move(name),
            .frame = rectAt(visibleFrame.x, 0, visibleFrame.width, visibleFrame.maxY()),
            .visibleFrame = visibleFrame};
}

class OverlayControllerTest : public OverlayFixture {
protected:
    OverlayControllerTest()
        : OverlayFixture(describe) {
        desktop.connected = {panelledScreen("Main", mainFrame), panelledScreen("Side", sideFrame)};
        config.set(configWith({landscape("Main", columns(0.5, zone(), zone())), landscape("Side", zone())}));
        overlay.start(monitor);
    }

    // What the displays show once the delay has passed.
    std::vector<std::string> shownAfter(std::chrono::milliseconds delay) {
        scheduler.advance(delay);
        return stage.shown();
    }

    std::vector<std::string> shownWhileHeld() {
        desktop.hold(hyper);
        return shownAfter(300ms);
    }
};

} // namespace

TEST_F(OverlayControllerTest, showsTheZonesOfEveryDisplayOnceHyperWasHeldForTheDelay) {
    desktop.hold(hyper);
    EXPECT_THAT(shownAfter(299ms), IsEmpty());
    EXPECT_THAT(shownAfter(1ms), ElementsAre("12", "3"));
    EXPECT_EQ(stage.windows.front().frame, mainFrame);
    EXPECT_EQ(stage.windows.back().frame, sideFrame);
    for (const auto& window : stage.windows) {
        EXPECT_EQ(window.level, StageLevel::floating);
        EXPECT_TRUE(window.ignoresMouse);
    }
    desktop.hold(nothing);
    EXPECT_THAT(stage.shown(), IsEmpty());
}

TEST_F(OverlayControllerTest, hidesOnAnyOtherSetOfModifiersAndComesBackOnlyAfterAnotherDelay) {
    for (const ModifierFlags other : {nothing, shift}) {
        EXPECT_THAT(shownWhileHeld(), ElementsAre("12", "3"));
        desktop.hold(other);
        EXPECT_THAT(stage.shown(), IsEmpty());
        EXPECT_THAT(shownAfter(1s), IsEmpty());
        desktop.hold(hyper);
        EXPECT_THAT(shownAfter(299ms), IsEmpty());
        desktop.hold(other);
        desktop.hold(hyper);
        EXPECT_THAT(shownAfter(299ms), IsEmpty());
        desktop.hold(nothing);
        EXPECT_THAT(shownAfter(1s), IsEmpty());
    }
    EXPECT_EQ(stage.windowsCreated, 2);
    EXPECT_EQ(stage.windows.front().timesPainted, 1);
}

TEST_F(OverlayControllerTest, isPreparedShortlyBeforeItIsToShow) {
    desktop.hold(hyper);
    scheduler.advance(199ms);
    EXPECT_TRUE(stage.windows.empty());
    scheduler.advance(1ms);
    ASSERT_EQ(stage.windows.size(), 2U);
    EXPECT_TRUE(stage.windows.front().isPrepared);
    EXPECT_THAT(stage.shown(), IsEmpty());
    EXPECT_THAT(shownAfter(100ms), ElementsAre("12", "3"));
    EXPECT_EQ(stage.windows.front().timesPainted, 1);
    desktop.hold(nothing);

    stage.windows.front().isPrepared = false;
    desktop.hold(hyper);
    desktop.hold(nothing);
    scheduler.advance(1s);
    EXPECT_FALSE(stage.windows.front().isPrepared);
}

TEST_F(OverlayControllerTest, noDelayStillWaitsForTheEventToBeHandled) {
    auto immediate = *config.current();
    OverlayConfig look;
    look.delay = 0;
    look.color = "#00ff00";
    immediate.overlay = look;
    config.set(immediate);
    desktop.hold(hyper);
    EXPECT_THAT(stage.shown(), IsEmpty());
    EXPECT_THAT(shownAfter(0ms), ElementsAre("12#00FF00", "3#00FF00"));
}

TEST_F(OverlayControllerTest, aReleaseThatNobodyReportedIsNoticed) {
    EXPECT_THAT(shownWhileHeld(), ElementsAre("12", "3"));
    EXPECT_THAT(shownAfter(2s), ElementsAre("12", "3"));
    desktop.holdUnreported(nothing);
    EXPECT_THAT(shownAfter(500ms), IsEmpty());
    EXPECT_EQ(scheduler.pendingTasks(), 0U);
}

TEST_F(OverlayControllerTest, explainsWhyThereAreNoZones) {
    config.set(std::nullopt);
    EXPECT_THAT(shownWhileHeld(), ElementsAre(StartsWith("No zones for \"Main\". The config has 0 zone(s)"),
                                              StartsWith("No zones for \"Side\".")));
    desktop.hold(nothing);
    config.error = "broken";
    EXPECT_THAT(shownWhileHeld(), ElementsAre("Config error: broken", "Config error: broken"));
}

TEST_F(OverlayControllerTest, displaysThatShareANameTakeScreensInTheirOrder) {
    desktop.connect({panelledScreen("Main", mainFrame), panelledScreen("Main", sideFrame)});
    EXPECT_THAT(shownWhileHeld(), ElementsAre("12", "12"));
    EXPECT_EQ(stage.windows.front().frame, mainFrame);
    EXPECT_EQ(stage.windows.back().frame, sideFrame);
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(OverlayControllerTest, aDisplayWithoutAScreenIsReportedAndTheOthersAreDrawn) {
    EXPECT_EQ(displays.displays().size(), 2U);
    desktop.connected = {panelledScreen("Other", mainFrame), panelledScreen("Side", sideFrame)};
    EXPECT_THAT(shownWhileHeld(), ElementsAre("3"));
    EXPECT_THAT(log.lines, ElementsAre("overlay: no NSScreen matched display \"Main\" — NSScreen.screens "
                                       "reports [Other, Side], nothing drawn on this display"));
}

TEST_F(OverlayControllerTest, aPreviewShowsAnotherConfigurationBelowItsWindowAndReportsClicks) {
    std::vector<std::string> clicks;
    overlay.beginPreview(settingsWindow,
                         {.onZoneClick =
                              [&](const DisplayInfo& display, std::optional<int> number) {
                                  clicks.push_back(fmt::format("{} {}", display.name, number.value_or(-1)));
                              },
                          .onEdit = {}});
    EXPECT_THAT(stage.shown(), IsEmpty());
    const auto edited = configWith({landscape("Main", rows(0.25, zone(), zone()))});
    overlay.updatePreview(edited, 2);
    EXPECT_EQ(stage.shown().front(), "1[2]");
    auto& window = stage.windows.front();
    EXPECT_EQ(window.below, settingsWindow);
    EXPECT_EQ(window.level, StageLevel::normal);

    // Modifiers and screens do not matter meanwhile; clicks do, while the program is active.
    desktop.hold(hyper);
    desktop.hold(nothing);
    desktop.connect(desktop.connected);
    EXPECT_EQ(stage.shown().front(), "1[2]");
    EXPECT_TRUE(window.ignoresMouse);
    stage.setActive(true);
    EXPECT_FALSE(window.ignoresMouse);
    const auto click = [](MemoryStageWindow& where, Point place) {
        where.press(place);
        where.release(place);
    };
    click(window, {10, 199});
    click(window, {10, 200});
    click(stage.windows.back(), {10, 10});
    EXPECT_THAT(clicks, ElementsAre("Main 1", "Main 2", "Side -1"));
    stage.setActive(false);
    EXPECT_TRUE(window.ignoresMouse);

    overlay.updatePreview(edited, std::nullopt);
    EXPECT_EQ(stage.shown().front(), "12");
    overlay.endPreview();
    EXPECT_THAT(stage.shown(), IsEmpty());
    overlay.updatePreview(edited, std::nullopt);
    EXPECT_THAT(stage.shown(), IsEmpty());
}

TEST_F(OverlayControllerTest, thePreviewEndsInTheOverlayWhileHyperIsHeld) {
    desktop.hold(hyper);
    overlay.beginPreview(settingsWindow, {});
    EXPECT_THAT(shownAfter(1s), IsEmpty());
    overlay.updatePreview(*config.current(), std::nullopt);
    overlay.endPreview();
    EXPECT_THAT(stage.shown(), IsEmpty());
    EXPECT_THAT(shownAfter(300ms), ElementsAre("12", "3"));
    EXPECT_EQ(stage.windows.front().level, StageLevel::floating);
    EXPECT_EQ(stage.windows.front().below, std::nullopt);
}

} // namespace karto::testing
