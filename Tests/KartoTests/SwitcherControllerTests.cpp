#include "Karto/Switcher/SwitcherController.h"

#include "Karto/Adapters/DisplayRegistry.h"
#include "Karto/Adapters/ModifierMonitor.h"
#include "Karto/Adapters/WindowService.h"
#include "Support/FixedConfig.h"
#include "Support/ManualScheduler.h"
#include "Support/MemoryCheckLog.h"
#include "Support/MemoryDesktop.h"
#include "Support/MemoryStage.h"
#include "Support/Trees.h"

#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Rect mainFrame = rectAt(0, 100, 1000, 800);
constexpr Rect inZone1 = rectAt(10, 120, 300, 300);
constexpr Rect inZone2 = rectAt(600, 120, 300, 300);
constexpr ModifierFlags nothing{};
constexpr ModifierFlags hyper{ModifierBits::control | ModifierBits::option | ModifierBits::command};

// For example "Editor:a [Editor:b]" for two rows with the second selected.
Picture describe(const SwitcherPanelView& view, const StageStyle& style) {
    std::string name = style.isTranslucent ? "" : "opaque";
    for (const SwitcherRow& row : view.rows) {
        const auto text = row.appName + ":" + row.title.value_or("");
        name += row.id == view.selected ? " [" + text + "]" : " " + text;
    }
    name = (view.continuesAbove ? "^" : "") + name + (view.continuesBelow ? " v" : "");
    return pictureNamed(name);
}

class SwitcherControllerTest : public ::testing::Test {
protected:
    SwitcherControllerTest() {
        desktop.connected = {screen("Main", mainFrame)};
        auto columnsOfMain = configWith({landscape("Main", columns(0.5, zone(), zone()))});
        columnsOfMain.hotkeys = HotkeysConfig{.modifiers = {"control", "option", "command"}, .keys = {}};
        config.set(columnsOfMain);
        switcher.start(monitor);
    }

    WindowHandle open(std::string title, const Rect& frame) {
        return desktop.open(editor, {.frame = frame, .title = std::move(title)});
    }

    std::vector<std::string> advance() {
        desktop.hold(hyper);
        switcher.advance();
        return log.takeLines();
    }

    std::vector<WindowHandle> stacking() { return desktop.application(editor).windows; }

    MemoryDesktop desktop;
    std::int32_t editor = desktop.launch("Editor");
    MemoryStage stage;
    ManualScheduler scheduler;
    MemoryCheckLog log;
    FixedConfig config;
    WindowService windows{desktop};
    DisplayRegistry displays{desktop};
    ModifierMonitor monitor{desktop, scheduler};
    SwitcherWindow panel{stage, describe};
    SwitcherController switcher{windows, displays, config, panel, log};
};

} // namespace

TEST_F(SwitcherControllerTest, eachPressSelectsTheNextWindowAndReleasingRaisesIt) {
    const auto a = open("a", inZone1);
    const auto b = open("b", inZone1);
    const auto c = open("c", inZone2);
    const auto unnamed = desktop.open(desktop.launch(std::nullopt), {.frame = inZone1, .title = ""});
    desktop.focus(a);
    EXPECT_THAT(advance(), ElementsAre("switcher: 3 window(s) in zone 1 on \"Main\""));
    EXPECT_THAT(stage.shown(), ElementsAre(" Editor:a [Editor:b] unknown application:"));
    EXPECT_EQ(stage.windows.front().level, StageLevel::panel);
    EXPECT_EQ(stage.windows.front().frame, rectAt(40, 441, 420, 118));
    EXPECT_THAT(advance(), IsEmpty());
    EXPECT_THAT(stage.shown(), ElementsAre(" Editor:a Editor:b [unknown application:]"));
    advance();
    advance();
    EXPECT_THAT(stage.shown(), ElementsAre(" Editor:a [Editor:b] unknown application:"));
    desktop.hold({ModifierBits::control});
    EXPECT_THAT(stage.shown(), IsEmpty());
    EXPECT_THAT(log.takeLines(), ElementsAre("switcher: raised a window of Editor"));
    EXPECT_THAT(stacking(), ElementsAre(b, a, c));

    EXPECT_THAT(advance(), ElementsAre("switcher: 3 window(s) in zone 1 on \"Main\""));
    advance();
    desktop.hold({hyper.bits | ModifierBits::shift});
    EXPECT_THAT(log.takeLines(), ElementsAre("switcher: raised a window of unknown application"));
    EXPECT_EQ(desktop.frontmost, 2);
    EXPECT_EQ(desktop.application(2).focusedWindow, unnamed);
}

TEST_F(SwitcherControllerTest, startsWithTheFirstWindowWhenTheFocusedOneIsNotListed) {
    open("a", inZone1);
    open("b", inZone1);
    const auto dialog = desktop.open(editor, {.frame = inZone1, .isStandard = false});
    desktop.focus(dialog);
    advance();
    EXPECT_THAT(stage.shown(), ElementsAre(" [Editor:a] Editor:b"));
}

TEST_F(SwitcherControllerTest, saysWhyThereIsNothingToCycle) {
    const auto expect = [&](const std::string& reason) {
        EXPECT_THAT(advance(), ElementsAre("switcher: " + reason));
        EXPECT_THAT(stage.shown(), IsEmpty());
        desktop.hold(nothing);
        EXPECT_THAT(log.takeLines(), IsEmpty());
    };
    expect("no focused window, ignored");
    const auto a = open("a", inZone2);
    desktop.focus(a);
    expect("1 window(s) in zone 2, nothing to cycle");
    desktop.window(a).frame = rectAt(5000, 0, 10, 10);
    expect("the focused window is in no zone, ignored");
    auto powerless = *config.current();
    powerless.hotkeys = HotkeysConfig{.modifiers = {}, .keys = {}};
    config.set(powerless);
    expect("hotkey modifiers are empty, nothing could ever release the gesture, ignored");
    config.set(std::nullopt);
    expect("no config loaded, ignored");
    desktop.window(a).isSizeReadable = false;
    expect("could not read the focused window's frame, ignored");
}

TEST_F(SwitcherControllerTest, thePanelGrowsWithTheDesktopsScaleAndIsPaintedForACompositor) {
    desktop.focus(open("a", inZone2));
    open("b", inZone2);
    stage.restyle({.scale = 2, .isTranslucent = false});
    advance();
    EXPECT_EQ(stage.windows.front().frame, rectAt(160, 416, 840, 168));
    EXPECT_THAT(stage.shown(), ElementsAre("opaque Editor:a [Editor:b]"));
    stage.restyle({.scale = 1, .isTranslucent = true});
    EXPECT_EQ(stage.windows.front().frame, rectAt(540, 458, 420, 84));
    EXPECT_THAT(stage.shown(), ElementsAre(" Editor:a [Editor:b]"));
    switcher.cancel();
    stage.restyle({.scale = 2});
    EXPECT_THAT(stage.shown(), IsEmpty());
}

TEST_F(SwitcherControllerTest, aPanelThatDoesNotFitScrollsWithTheSelection) {
    const Rect flat = rectAt(0, 0, 1000, 130);
    desktop.connected = {screen("Main", flat)};
    for (const auto* const title : {"a", "b", "c", "d", "e"}) {
        desktop.focus(open(title, rectAt(10, 20, 300, 100)));
    }
    advance();
    EXPECT_EQ(stage.windows.front().frame, rectAt(40, 6, 420, 118));
    EXPECT_THAT(stage.shown(), ElementsAre(" Editor:e [Editor:d] Editor:c v"));
    for (const auto* const next : {" Editor:e Editor:d [Editor:c] v", "^ Editor:d Editor:c [Editor:b] v",
                                   "^ Editor:c Editor:b [Editor:a]", " [Editor:e] Editor:d Editor:c v"}) {
        advance();
        EXPECT_THAT(stage.shown(), ElementsAre(next));
    }
}

} // namespace karto::testing
