#include "KartoCore/LayoutEditor.h"
#include "Support/OverlayFixture.h"
#include "Support/Trees.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Rect mainFrame = rectAt(0, 25, 1000, 800);
constexpr Rect sideFrame = rectAt(1000, 0, 800, 600);

// What there is to see of editing: "marked", "drag", the number of splits of the zone with buttons, "help".
Picture describe(const OverlayContentView& view, const StageStyle& /*style*/) {
    if (!view.editing) {
        return pictureNamed("not edited");
    }
    const auto& editing = *view.editing;
    std::string name = editing.hot ? "marked " : "";
    name += editing.dragging ? "dragging " : "";
    name += editing.buttonsFor ? fmt::format("buttons {} ", editing.buttonsFor->branches.size()) : "";
    name += editing.showsHelp ? "help" : "";
    return pictureNamed(name);
}

// A preview of an editor whose edits are applied and shown at once.
class ZoneEditingPreviewTest : public OverlayFixture {
protected:
    ZoneEditingPreviewTest()
        : OverlayFixture(describe) {
        overlay.start(monitor);
        desktop.connected = {screen("Main", mainFrame), screen("Side", sideFrame)};
        stage.setActive(true);
        overlay.beginPreview(
            settingsWindow,
            {.onZoneClick = [this](const DisplayInfo&, std::optional<int>) { ++clicks; },
             .onEdit = [this](const DisplayInfo& display, const ZoneEdit& edit) { apply(display, edit); }});
        show();
    }

    void show() { overlay.updatePreview(editor.config(), std::nullopt); }

    void apply(const DisplayInfo& display, const ZoneEdit& edit) {
        heard.push_back(fmt::format("{} {}", display.name, edit.index()));
        if (const auto* drag = std::get_if<ZoneEdits::DragBoundary>(&edit)) {
            editor.moveBoundaryLive(drag->path, display.name, display.orientation(), drag->to);
        } else if (const auto* split = std::get_if<ZoneEdits::Split>(&edit)) {
            editor.split(split->path, display.name, display.orientation(), split->axis);
        } else {
            editor.commitBoundaryDrag();
        }
        if (whenHeard) {
            whenHeard();
        }
        show();
    }

    [[nodiscard]] MemoryStageWindow& main() { return stage.windows.front(); }

    // Where the boundary of the main display stands.
    [[nodiscard]] double mainBoundary() const { return editor.config().displays.front().root.split()->at; }

    void beginDrag() {
        main().press({500, 100});
        main().drag({560, 100});
        heard.clear();
    }

    LayoutEditor editor{
        configWith({landscape("Main", columns(0.5, zone(), zone())), portrait("Side", zone())})};
    // Displays and kinds of edits.
    std::vector<std::string> heard;
    int clicks = 0;
    std::function<void()> whenHeard;
};

constexpr const char* dragged = "Main 2";
constexpr const char* committed = "Main 3";

} // namespace

TEST_F(ZoneEditingPreviewTest, displaysWithALayoutOfTheirOrientationAreEdited) {
    EXPECT_THAT(stage.shown(), ElementsAre("", "not edited"));
    desktop.connect({screen("Main", mainFrame), screen("Side", rectAt(1000, 0, 600, 800))});
    show();
    EXPECT_THAT(stage.shown(), ElementsAre("", ""));
    overlay.endPreview();
    EXPECT_THAT(stage.shown(), IsEmpty());
}

TEST_F(ZoneEditingPreviewTest, everyMoveIsAnEditPaintedOnceAndTheReleaseMakesOneUndoStep) {
    main().press({500, 100});
    for (int x = 551; x <= 560; ++x) {
        main().drag({double(x), 100}, {.bits = ModifierBits::option});
        EXPECT_EQ(stage.shown().front(), "marked dragging ");
        EXPECT_EQ(main().cursor, Cursor::resizeLeftRight);
    }
    EXPECT_EQ(heard, std::vector<std::string>(10, dragged));
    EXPECT_EQ(main().timesPainted, 12);
    EXPECT_FALSE(editor.canUndo());
    main().release({560, 100});
    EXPECT_EQ(heard.back(), committed);
    EXPECT_EQ(heard.size(), 11U);
    EXPECT_EQ(mainBoundary(), 0.56);
    EXPECT_EQ(stage.shown().front(), "marked buttons 1 ");
    editor.undo();
    show();
    EXPECT_EQ(mainBoundary(), 0.5);
    EXPECT_EQ(stage.shown().front(), "buttons 1 ");
    EXPECT_EQ(main().cursor, Cursor::arrow);
    EXPECT_EQ(clicks, 0);
}

TEST_F(ZoneEditingPreviewTest, aPointerThatChangesNothingPaintsNothing) {
    main().move({100, 100});
    const int before = main().timesPainted;
    for (int x = 101; x < 200; ++x) {
        main().move({double(x), 100});
    }
    EXPECT_EQ(main().timesPainted, before);
    EXPECT_EQ(scheduler.pendingTasks(), 0U);
    main().leave();
    EXPECT_EQ(stage.shown().front(), "");
}

TEST_F(ZoneEditingPreviewTest, aSplitShowsTheButtonsOfTheZoneThatIsUnderThePointerNow) {
    main().move({210, 400});
    main().press({210, 400});
    main().release({210, 400});
    EXPECT_THAT(heard, ElementsAre("Main 0"));
    EXPECT_EQ(stage.shown().front(), "buttons 2 ");
    EXPECT_EQ(clicks, 0);
}

TEST_F(ZoneEditingPreviewTest, aDisplayThatChangesInTheMiddleOfADragEndsIt) {
    const std::vector before = desktop.connected;
    for (const auto& after :
         {std::vector{screen("Side", sideFrame)},
          std::vector{screen("Main", rectAt(0, 0, 800, 1000)), before.back()}, std::vector{before.front()}}) {
        desktop.connect(before);
        show();
        beginDrag();
        desktop.connect(after);
        show();
        EXPECT_THAT(heard, ElementsAre(committed));
        EXPECT_TRUE(editor.canUndo());
        main().move({580, 100});
        EXPECT_THAT(heard, ElementsAre(committed));
        editor.undo();
    }
}

TEST_F(ZoneEditingPreviewTest, theEndOfThePreviewOrOfActivityEndsADrag) {
    beginDrag();
    stage.setActive(false);
    EXPECT_TRUE(main().ignoresMouse);
    main().cancel();
    EXPECT_THAT(heard, ElementsAre(committed));
    editor.undo();
    stage.setActive(true);
    show();
    beginDrag();
    overlay.endPreview();
    EXPECT_THAT(heard, ElementsAre(committed));
    main().cancel();
    EXPECT_THAT(heard, ElementsAre(committed));
    EXPECT_EQ(main().cursor, Cursor::arrow);
}

TEST_F(ZoneEditingPreviewTest, whoHearsOfAnEditMayEndThePreviewOrChangeTheDisplays) {
    main().press({500, 100});
    whenHeard = [&] { desktop.connect({desktop.connected.front()}); };
    main().drag({560, 100});
    whenHeard = nullptr;
    EXPECT_THAT(heard, ElementsAre(dragged, committed));
    EXPECT_EQ(stage.windows.size(), 1U);
    main().press({560, 100});
    whenHeard = [&] { overlay.endPreview(); };
    main().drag({580, 100});
    EXPECT_THAT(stage.shown(), IsEmpty());
}

TEST_F(ZoneEditingPreviewTest, aButtonExplainsItselfToAPointerThatRests) {
    main().move({210, 400});
    scheduler.advance(500ms);
    main().move({211, 400});
    scheduler.advance(699ms);
    EXPECT_EQ(stage.shown().front(), "buttons 1 ");
    scheduler.advance(1ms);
    EXPECT_EQ(stage.shown().front(), "buttons 1 help");
    EXPECT_EQ(scheduler.pendingTasks(), 0U);
    main().move({230, 400});
    EXPECT_EQ(stage.shown().front(), "buttons 1 ");
    scheduler.advance(5s);
    EXPECT_EQ(stage.shown().front(), "buttons 1 ");
}

} // namespace karto::testing
