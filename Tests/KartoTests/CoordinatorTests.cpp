#include "Karto/Coordinator.h"

#include "Karto/Adapters/DisplayRegistry.h"
#include "Karto/Adapters/WindowService.h"
#include "Support/FixedConfig.h"
#include "Support/MemoryCheckLog.h"
#include "Support/MemoryDesktop.h"
#include "Support/Trees.h"

#include <gmock/gmock.h>

#include <functional>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;

Screen screen(std::string name, const Rect& frame) {
    return {.name = std::move(name), .frame = frame, .visibleFrame = frame};
}

const Rect mainFrame{.x = 0, .y = 25, .width = 1000, .height = 800};
const Rect sideFrame{.x = 1000, .y = 0, .width = 600, .height = 400};

// Zone 1 is the left half of Main; 2 and 3 are the upper and the lower part of its right half.
const Rect zone1{.x = 0, .y = 25, .width = 500, .height = 800};
const Rect zone2{.x = 500, .y = 25, .width = 500, .height = 400};
const Rect zone3{.x = 500, .y = 425, .width = 500, .height = 400};
const Rect rightHalf{.x = 500, .y = 25, .width = 500, .height = 800};
// Zones 4 and 5 are the halves of Side.
const Rect zone4{.x = 1000, .y = 0, .width = 300, .height = 400};
const Rect zone5{.x = 1300, .y = 0, .width = 300, .height = 400};
const Rect nowhere{.x = -900, .y = -900, .width = 100, .height = 100};

class CoordinatorTest : public ::testing::Test {
protected:
    CoordinatorTest() {
        desktop_.connected = {main_};
        desktop_.focus(focused_);
    }

    std::vector<std::string> handle(const KartoCommand& command) {
        coordinator_.handle(command);
        return log_.takeLines();
    }

    Rect frame() { return desktop_.window(focused_).frame; }

    Screen main_ = screen("Main", mainFrame);
    Screen side_ = screen("Side", sideFrame);
    MemoryDesktop desktop_;
    std::int32_t editor_ = desktop_.launch("Editor");
    WindowHandle focused_ = desktop_.open(editor_, {.frame = zone1});
    WindowService windows_{desktop_};
    DisplayRegistry displays_{desktop_};
    FixedConfig config_{configWith({landscape("Main", columns(0.5, zone(), rows(0.5, zone(), zone()))),
                                    landscape("Side", columns(0.5, zone(), zone()))})};
    MemoryCheckLog log_;
    Coordinator coordinator_{windows_, displays_, config_, log_};
};

} // namespace

TEST_F(CoordinatorTest, everyCommandMovesTheFocusedWindowToItsPlace) {
    struct Case {
        KartoCommand command;
        Rect from;
        std::string result;
    };

    const std::string atZone1 = "(0.0, 25.0, 500.0, 800.0)";
    const std::string atZone2 = "(500.0, 25.0, 500.0, 400.0)";
    const std::string atZone3 = "(500.0, 425.0, 500.0, 400.0)";
    for (const auto& [command, from, result] :
         {Case{KartoCommand::moveToZone(3), nowhere, atZone3}, Case{KartoCommand::nextZone, zone1, atZone2},
          Case{KartoCommand::nextZone, zone3, atZone1}, Case{KartoCommand::previousZone, zone1, atZone3},
          Case{KartoCommand::expandZone, zone2, "(500.0, 25.0, 500.0, 800.0)"},
          Case{KartoCommand::shrinkZone, rightHalf, atZone2},
          Case{KartoCommand::snapToZone, {.x = 550, .y = 500, .width = 90.5, .height = 90}, atZone3},
          Case{KartoCommand::fillDisplay, zone3, "(0.0, 25.0, 1000.0, 800.0)"}}) {
        desktop_.window(focused_).frame = from;
        EXPECT_THAT(handle(command), ElementsAre("command " + command.caseName() + ": target " + result +
                                                 ", result " + result + ", off by (0.0, 0.0, 0.0, 0.0)"));
    }
}

TEST_F(CoordinatorTest, aCommandThatCannotRunSaysWhyAndMovesNothing) {
    struct Case {
        std::function<void()> trouble;
        KartoCommand command;
        std::string line;
    };

    auto& window = desktop_.window(focused_);
    for (const auto& [trouble, command, line] : {
             Case{[&] { window.frame = {.x = 2000, .y = 0.5, .width = 10, .height = 10}; },
                  KartoCommand::fillDisplay,
                  "command fillDisplay: no destination found for frame (2000.0, 0.5, 10.0, 10.0), ignored"},
             Case{[&] { window.frame = zone1; }, KartoCommand::moveToZone(4),
                  "command moveToZone(4): no destination found for frame (0.0, 25.0, 500.0, 800.0), ignored"},
             Case{[] {}, KartoCommand::shrinkZone,
                  "command shrinkZone: no destination found for frame (0.0, 25.0, 500.0, 800.0), ignored"},
             Case{[] {}, KartoCommand::cycleWindows,
                  "command cycleWindows: reached the coordinator, which does not run the window switcher — "
                  "routing bug"},
             Case{[&] { window.isSizeReadable = false; }, KartoCommand::nextZone,
                  "command nextZone: could not read focused window's frame, ignored"},
             Case{[] {}, KartoCommand::tidy, "command tidy: could not read focused window's frame, ignored"},
             Case{[&] { window.isFullscreen = true; }, KartoCommand::nextZone,
                  "command nextZone: focused window is fullscreen, ignored"},
             Case{[&] {
                      desktop_.connected.front().name = "Other";
                      desktop_.connect(desktop_.connected);
                  },
                  KartoCommand::snapToZone, "command snapToZone: ring is empty, ignored"},
             Case{[] {}, KartoCommand::tidy, "command tidy: ring is empty, ignored"},
             Case{[] {}, KartoCommand::cancelCycling,
                  "command cancelCycling: reached the coordinator, which does not run the window switcher — "
                  "routing bug"},
             Case{[&] { config_.clear(); }, KartoCommand::moveToZone(3),
                  "command moveToZone(3): no config loaded, ignored"},
             Case{[] {}, KartoCommand::cycleWindows, "command cycleWindows: no config loaded, ignored"},
             Case{[&] { desktop_.frontmost.reset(); }, KartoCommand::fillDisplay,
                  "command fillDisplay: no focused window, ignored"},
         }) {
        trouble();
        const Rect before = frame();
        EXPECT_THAT(handle(command), ElementsAre(line));
        EXPECT_EQ(frame(), before);
    }
}

TEST_F(CoordinatorTest, fillingADisplayNeedsNoZones) {
    desktop_.connect({screen("Other", mainFrame), side_});
    desktop_.window(focused_).frame = zone5;
    config_.save(configWith({}));
    handle(KartoCommand::fillDisplay);
    EXPECT_EQ(frame(), sideFrame);
    config_.clear();
    desktop_.window(focused_).frame = zone2;
    handle(KartoCommand::fillDisplay);
    EXPECT_EQ(frame(), mainFrame);
}

TEST_F(CoordinatorTest, saysWhenAWindowMissesItsTarget) {
    auto& window = desktop_.window(focused_);
    window.frame = zone2;
    window.minimumSize = {.width = 520, .height = 400};
    EXPECT_THAT(
        handle(KartoCommand::moveToZone(3)),
        ElementsAre("command moveToZone(3): target (500.0, 425.0, 500.0, 400.0), result (500.0, 425.0, "
                    "520.0, 400.0), off by (0.0, 0.0, 20.0, 0.0)"));
    window.minimumSize.width = 520.5;
    EXPECT_THAT(
        handle(KartoCommand::moveToZone(3)),
        ElementsAre("command moveToZone(3): target (500.0, 425.0, 500.0, 400.0), result (500.0, 425.0, "
                    "520.5, 400.0), off by (0.0, 0.0, 20.5, 0.0) — WINDOW DID NOT ACCEPT THE FRAME"));
    window.closesWhenMoved = true;
    EXPECT_THAT(
        handle(KartoCommand::moveToZone(1)),
        ElementsAre("command moveToZone(1): target (0.0, 25.0, 500.0, 800.0), could not read back the "
                    "resulting frame"));
}

TEST_F(CoordinatorTest, displaysThatCannotBeToldApartAreNamedBeforeTheOutcome) {
    desktop_.connect({main_, screen("Main", sideFrame)});
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

TEST_F(CoordinatorTest, shrinkingRetracesTheExpansion) {
    desktop_.window(focused_).frame = zone3;
    for (const Rect& expected : {rightHalf, mainFrame}) {
        handle(KartoCommand::expandZone);
        EXPECT_EQ(frame(), expected);
    }
    for (const Rect& expected : {rightHalf, zone3}) {
        handle(KartoCommand::shrinkZone);
        EXPECT_EQ(frame(), expected);
    }
}

TEST_F(CoordinatorTest, anExpansionIsForgottenWithItsDisplay) {
    desktop_.connect({main_, side_});
    desktop_.window(focused_).frame = zone5;
    handle(KartoCommand::expandZone);
    EXPECT_EQ(frame(), sideFrame);
    desktop_.connect({main_});
    desktop_.window(focused_).frame = rightHalf;
    handle(KartoCommand::shrinkZone);
    EXPECT_EQ(frame(), zone2);
    desktop_.connect({main_, side_});
    desktop_.window(focused_).frame = sideFrame;
    handle(KartoCommand::shrinkZone);
    EXPECT_EQ(frame(), zone4);
}

TEST_F(CoordinatorTest, tidyDealsTheWindowsOfTheDisplayOutOverItsZones) {
    desktop_.connect({main_, side_});
    const auto mail = desktop_.launch("Mail");
    const auto anonymous = desktop_.launch(std::nullopt);
    const Rect mainPart{.x = 10, .y = 30, .width = 100, .height = 100};
    const auto second = desktop_.open(editor_, {.frame = mainPart});
    const auto third = desktop_.open(editor_, {.frame = mainPart});
    const auto fourth = desktop_.open(mail, {.frame = mainPart});
    const auto elsewhere = desktop_.open(mail, {.frame = zone4});
    EXPECT_THAT(
        handle(KartoCommand::tidy),
        ElementsAre("command tidy: laid out 4 window(s) on display \"Main\" across 3 zone(s), 4 accepted"));
    const std::vector expected{
        std::pair{focused_, zone1}, {second, zone2}, {third, zone3}, {fourth, zone1}, {elsewhere, zone4}};
    for (const auto& [window, rect] : expected) {
        EXPECT_EQ(desktop_.window(window).frame, rect);
    }

    desktop_.window(second).frame = mainPart;
    desktop_.window(second).isStubborn = true;
    desktop_.open(anonymous, {.frame = mainPart, .isStubborn = true});
    desktop_.window(third).closesWhenMoved = true;
    EXPECT_THAT(
        handle(KartoCommand::tidy),
        ElementsAre("command tidy: laid out 5 window(s) on display \"Main\" across 3 zone(s), 2 accepted, "
                    "3 did not take the frame: Editor (2x), unknown application"));
}

TEST_F(CoordinatorTest, tidyNamesTheDisplayThatHasNothingToLayOut) {
    desktop_.connect({main_, screen("Other", sideFrame)});
    auto& window = desktop_.window(focused_);
    window.isFullscreen = true;
    EXPECT_THAT(
        handle(KartoCommand::tidy),
        ElementsAre("command tidy: laid out 0 window(s) on display \"Main\" across 3 zone(s), 0 accepted"));
    window.frame = sideFrame;
    EXPECT_THAT(handle(KartoCommand::tidy),
                ElementsAre("command tidy: no ring zones on display \"Other\", ignored"));
    window.frame = nowhere;
    EXPECT_THAT(handle(KartoCommand::tidy),
                ElementsAre("command tidy: no display holds the focused window, ignored"));
    desktop_.frontmost.reset();
    EXPECT_THAT(handle(KartoCommand::tidy), ElementsAre("command tidy: no focused window, ignored"));
}

} // namespace karto::testing
