#include "Karto/Coordinator.h"

#include "Karto/Adapters/DisplayRegistry.h"
#include "Karto/Adapters/WindowService.h"
#include "Support/FixedConfig.h"
#include "Support/MemoryCheckLog.h"
#include "Support/MemoryDesktop.h"
#include "Support/Trees.h"

#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;

const Rect mainFrame{0, 25, 1000, 800};
const Rect sideFrame{1000, 0, 600, 400};

// Zone 1 is the left half of Main; 2 and 3 are the upper and the lower part of its right half.
const Rect zone1{0, 25, 500, 800};
const Rect zone2{500, 25, 500, 400};
const Rect zone3{500, 425, 500, 400};
const Rect rightHalf{500, 25, 500, 800};
// Zones 4 and 5 are the halves of Side.
const Rect zone4{1000, 0, 300, 400};
const Rect zone5{1300, 0, 300, 400};
const Rect nowhere{-900, -900, 100, 100};

class CoordinatorTest : public ::testing::Test {
protected:
    CoordinatorTest() {
        desktop.connected = {mainScreen};
        desktop.focus(focused);
    }

    std::vector<std::string> handle(const KartoCommand& command) {
        coordinator.handle(command);
        return log.takeLines();
    }

    // The command runs into this one line.
    void expect(const KartoCommand& command, const std::string& outcome) {
        EXPECT_THAT(handle(command), ElementsAre("command " + command.caseName() + ": " + outcome));
    }

    Rect frame() { return desktop.window(focused).frame; }

    Screen mainScreen = screen("Main", mainFrame);
    Screen sideScreen = screen("Side", sideFrame);
    MemoryDesktop desktop;
    std::int32_t editor = desktop.launch("Editor");
    WindowHandle focused = desktop.open(editor, {.frame = zone1});
    WindowService windows{desktop};
    DisplayRegistry displays{desktop};
    FixedConfig config{configWith({landscape("Main", columns(0.5, zone(), rows(0.5, zone(), zone()))),
                                   landscape("Side", columns(0.5, zone(), zone()))})};
    MemoryCheckLog log;
    Coordinator coordinator{windows, displays, config, log};
};

} // namespace

TEST_F(CoordinatorTest, everyCommandMovesTheFocusedWindowToItsPlace) {
    const std::string atZone1 = "(0.0, 25.0, 500.0, 800.0)";
    const std::string atZone2 = "(500.0, 25.0, 500.0, 400.0)";
    const std::string atZone3 = "(500.0, 425.0, 500.0, 400.0)";
    const auto expectMove = [&](const KartoCommand& command, const Rect& from, const std::string& to) {
        desktop.window(focused).frame = from;
        expect(command, "target " + to + ", result " + to + ", off by (0.0, 0.0, 0.0, 0.0)");
    };
    expectMove(KartoCommand::moveToZone(3), nowhere, atZone3);
    expectMove(KartoCommand::nextZone, zone1, atZone2);
    expectMove(KartoCommand::nextZone, zone3, atZone1);
    expectMove(KartoCommand::previousZone, zone1, atZone3);
    expectMove(KartoCommand::expandZone, zone2, "(500.0, 25.0, 500.0, 800.0)");
    expectMove(KartoCommand::shrinkZone, rightHalf, atZone2);
    expectMove(KartoCommand::snapToZone, {550, 500, 90.5, 90}, atZone3);
    expectMove(KartoCommand::fillDisplay, zone3, "(0.0, 25.0, 1000.0, 800.0)");
}

TEST_F(CoordinatorTest, aCommandThatCannotRunSaysWhyAndMovesNothing) {
    const std::string noDestination = "no destination found for frame (0.0, 25.0, 500.0, 800.0), ignored";
    const std::string misrouted =
        "reached the coordinator, which does not run the window switcher — routing bug";
    expect(KartoCommand::moveToZone(4), noDestination);
    expect(KartoCommand::shrinkZone, noDestination);
    expect(KartoCommand::cycleWindows, misrouted);
    auto& window = desktop.window(focused);
    window.isSizeReadable = false;
    expect(KartoCommand::nextZone, "could not read focused window's frame, ignored");
    expect(KartoCommand::tidy, "could not read focused window's frame, ignored");
    window.isFullscreen = true;
    expect(KartoCommand::nextZone, "focused window is fullscreen, ignored");
    desktop.connect({sideScreen});
    config.set(configWith({landscape("Main", zone())}));
    expect(KartoCommand::snapToZone, "ring is empty, ignored");
    expect(KartoCommand::tidy, "ring is empty, ignored");
    expect(KartoCommand::cancelCycling, misrouted);
    config.set(std::nullopt);
    expect(KartoCommand::moveToZone(3), "no config loaded, ignored");
    expect(KartoCommand::cycleWindows, "no config loaded, ignored");
    desktop.frontmost.reset();
    expect(KartoCommand::fillDisplay, "no focused window, ignored");
    EXPECT_EQ(frame(), zone1);
}

TEST_F(CoordinatorTest, fillingADisplayNeedsNoZones) {
    desktop.connect({screen("Other", mainFrame), sideScreen});
    desktop.window(focused).frame = zone5;
    config.set(configWith({}));
    handle(KartoCommand::fillDisplay);
    EXPECT_EQ(frame(), sideFrame);
    config.set(std::nullopt);
    desktop.window(focused).frame = zone2;
    handle(KartoCommand::fillDisplay);
    EXPECT_EQ(frame(), mainFrame);
}

TEST_F(CoordinatorTest, saysWhenAWindowMissesItsTarget) {
    auto& window = desktop.window(focused);
    window.minimumSize = {.width = 520, .height = 400};
    expect(KartoCommand::moveToZone(3),
           "target (500.0, 425.0, 500.0, 400.0), result (500.0, 425.0, 520.0, 400.0), "
           "off by (0.0, 0.0, 20.0, 0.0)");
    window.minimumSize.width = 520.5;
    expect(KartoCommand::moveToZone(3),
           "target (500.0, 425.0, 500.0, 400.0), result (500.0, 425.0, 520.5, 400.0), "
           "off by (0.0, 0.0, 20.5, 0.0) — WINDOW DID NOT ACCEPT THE FRAME");
    window.closesWhenMoved = true;
    expect(KartoCommand::moveToZone(1),
           "target (0.0, 25.0, 500.0, 800.0), could not read back the resulting frame");
}

TEST_F(CoordinatorTest, displaysThatCannotBeToldApartAreNamedBeforeTheOutcome) {
    desktop.connect({mainScreen, screen("Main", sideFrame)});
    const std::string warning =
        " 2 displays share the name \"Main\" (landscape) — zones for it cannot be told "
        "apart, placement on all but one is wrong";
    EXPECT_THAT(handle(KartoCommand::moveToZone(1)),
                ElementsAre("command moveToZone(1):" + warning,
                            ::testing::StartsWith("command moveToZone(1): target")));
    EXPECT_THAT(handle(KartoCommand::cycleWindows),
                ElementsAre("command cycleWindows:" + warning, ::testing::HasSubstr("routing bug")));
    EXPECT_THAT(
        handle(KartoCommand::tidy),
        ElementsAre("command tidy:" + warning,
                    "command tidy: display name \"Main\" is shared by more than one display — the 3 zone(s) "
                    "below include another monitor's, the layout will be wrong",
                    "command tidy: laid out 1 window(s) on display \"Main\" across 3 zone(s), 1 accepted"));
}

TEST_F(CoordinatorTest, anExpansionIsForgottenWithItsDisplay) {
    desktop.connect({mainScreen, sideScreen});
    desktop.window(focused).frame = zone5;
    handle(KartoCommand::expandZone);
    EXPECT_EQ(frame(), sideFrame);
    desktop.connect({mainScreen});
    desktop.window(focused).frame = rightHalf;
    handle(KartoCommand::shrinkZone);
    EXPECT_EQ(frame(), zone2);
    desktop.connect({mainScreen, sideScreen});
    desktop.window(focused).frame = sideFrame;
    handle(KartoCommand::shrinkZone);
    EXPECT_EQ(frame(), zone4);
}

TEST_F(CoordinatorTest, aWindowWithTheHandleOfAClosedOneInheritsNoExpansion) {
    desktop.window(focused).frame = zone3;
    handle(KartoCommand::expandZone);
    desktop.close(focused);
    desktop.reopen(focused, editor, {.frame = rightHalf});
    handle(KartoCommand::shrinkZone);
    EXPECT_EQ(frame(), zone2);
}

TEST_F(CoordinatorTest, tidyDealsTheWindowsOfTheDisplayOutOverItsZones) {
    desktop.connect({mainScreen, sideScreen});
    const auto mail = desktop.launch("Mail");
    const auto anonymous = desktop.launch(std::nullopt);
    const Rect mainPart{10, 30, 100, 100};
    const auto second = desktop.open(editor, {.frame = mainPart});
    const auto third = desktop.open(editor, {.frame = mainPart});
    const auto fourth = desktop.open(mail, {.frame = mainPart});
    const auto elsewhere = desktop.open(mail, {.frame = zone4});
    expect(KartoCommand::tidy, "laid out 4 window(s) on display \"Main\" across 3 zone(s), 4 accepted");
    const std::vector expected{
        std::pair{focused, zone1}, {second, zone2}, {third, zone3}, {fourth, zone1}, {elsewhere, zone4}};
    for (const auto& [window, rect] : expected) {
        EXPECT_EQ(desktop.window(window).frame, rect);
    }

    desktop.window(second).frame = mainPart;
    desktop.window(second).isStubborn = true;
    desktop.open(anonymous, {.frame = mainPart, .isStubborn = true});
    desktop.window(third).closesWhenMoved = true;
    expect(KartoCommand::tidy, "laid out 5 window(s) on display \"Main\" across 3 zone(s), 2 accepted, "
                               "3 did not take the frame: Editor (2x), unknown application");
}

TEST_F(CoordinatorTest, tidyNamesTheDisplayThatHasNothingToLayOut) {
    desktop.connect({mainScreen, screen("Other", sideFrame)});
    auto& window = desktop.window(focused);
    window.isFullscreen = true;
    expect(KartoCommand::tidy, "laid out 0 window(s) on display \"Main\" across 3 zone(s), 0 accepted");
    window.frame = sideFrame;
    expect(KartoCommand::tidy, "no ring zones on display \"Other\", ignored");
    window.frame = nowhere;
    expect(KartoCommand::tidy, "no display holds the focused window, ignored");
    desktop.frontmost.reset();
    expect(KartoCommand::tidy, "no focused window, ignored");
}

} // namespace karto::testing
