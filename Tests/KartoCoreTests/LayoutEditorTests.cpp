#include "KartoCore/LayoutEditor.h"

#include "Support/Trees.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace karto {

namespace {

using enum Branch;
using testing::columns, testing::landscape, testing::portrait, testing::rows, testing::zone;
using ::testing::ElementsAre;

constexpr auto upright = Orientation::portrait;
constexpr auto level = Orientation::landscape;

LayoutEditor editorOf(const std::vector<DisplayLayout>& displays) {
    return LayoutEditor({"profile", displays, {}, {}});
}

const LayoutNode& rootOf(const LayoutEditor& editor, std::size_t display = 0) {
    return editor.config().displays.at(display).root;
}

std::size_t steps(const LayoutEditor& editor) { return editor.history().states().size() - 1; }

void editAnyhow(LayoutEditor& editor) {
    const NodePath path{
        *rc::gen::resize(4, rc::gen::container<std::vector<Branch>>(rc::gen::element(first, second)))};
    const auto display = *rc::gen::element<std::string>("A", "B", "C");
    const auto orientation = *rc::gen::element(level, upright);
    const auto& command = *rc::gen::elementOf(KartoCommand::configurable);
    switch (*rc::gen::inRange(0, 10)) {
    case 0: return editor.split(path, display, orientation, Axis::vertical);
    case 1: return editor.removeZone(path, display, orientation);
    case 2: editor.moveBoundaryLive(path, display, orientation, 0.1); return editor.commitBoundaryDrag();
    case 3: return editor.applyPreset(LayoutPresets::all(level)[1], display, orientation);
    case 4: return editor.pinOrder(*rc::gen::inRange(-2, 10), path, display, orientation);
    case 5: return editor.clearPin(path, display, orientation);
    case 6: return editor.setModifiers({"shift", "option"});
    case 7: return editor.setCommandKey(*CommandKey::named("z"), command);
    case 8: return editor.resetCommandKey(command);
    default: return editor.setOverlayAppearance({*rc::gen::inRange(0, 3) / 1., 0.5, 64, {}});
    }
}

RC_GTEST_PROP(LayoutEditor, undoThenRedoIsTheIdentityThroughTheWholeHistory, ()) {
    LayoutEditor editor = editorOf(*testing::layouts());
    std::vector<KartoConfig> passed{editor.config()};
    for (int left = *rc::gen::inRange(0, 12); left > 0; --left) {
        editAnyhow(editor);
        if (editor.config() != passed.back()) {
            passed.push_back(editor.config());
        }
    }
    for (std::size_t state = passed.size() - 1; state > 0; --state) {
        editor.undo();
        RC_ASSERT(editor.config() == passed[state - 1]);
        LayoutEditor again = editor;
        again.redo();
        RC_ASSERT(again.config() == passed[state]);
    }
    RC_ASSERT(!editor.canUndo());
}

TEST(LayoutEditor, pinsAreStoredAsGivenAndFoundByTheirClaimOnEveryDisplay) {
    LayoutEditor editor = editorOf({landscape("A", columns(0.5, zone(5), zone(4))),
                                    portrait("B", rows(0.5, zone(12), columns(0.5, zone(), zone(6))))});
    editor.pinOrder(9, {{first}}, "B", upright);
    editor.pinOrder(0, {{second}}, "A", level);
    EXPECT_EQ(rootOf(editor, 0), columns(0.5, zone(), zone(0)));
    EXPECT_EQ(rootOf(editor, 1), rows(0.5, zone(9), columns(0.5, zone(), zone())));
    // No zone there to pin, but the number is free.
    editor.pinOrder(5, {{second}}, "B", upright);
    editor.clearPin({{second}}, "A", level);
    EXPECT_EQ(rootOf(editor, 0), columns(0.5, zone(), zone()));
    EXPECT_EQ(rootOf(editor, 1), rows(0.5, zone(), columns(0.5, zone(), zone())));
    EXPECT_EQ(steps(editor), 4);
}

TEST(LayoutEditor, aChangeAfterAnUndoDropsWhatCouldBeRedone) {
    LayoutEditor editor = editorOf({landscape("A", zone())});
    EXPECT_FALSE(editor.canUndo() || editor.canRedo());
    editor.split({}, "A", level, Axis::vertical);
    editor.undo();
    EXPECT_TRUE(editor.canRedo());
    editor.split({}, "A", level, Axis::horizontal);
    EXPECT_FALSE(editor.canRedo());
    editor.redo();
    EXPECT_EQ(rootOf(editor), rows(0.5, zone(), zone()));
    EXPECT_EQ(steps(editor), 1);
}

TEST(LayoutEditor, aWholeDragIsOneStepAndAnUndoBeforeItsEndDiscardsIt) {
    const LayoutNode before = columns(0.3, zone(), zone());
    LayoutEditor editor = editorOf({landscape("A", before)});
    const LayoutEditor untouched = editor;
    editor.setOverlayAppearanceLive({0, 0.5, 32, {1, 0.5, 0}});
    editor.setOverlayAppearanceLive({1, 0.5, 32, {1, 0.5, 0}});
    editor.commitOverlayAppearanceDrag();
    EXPECT_EQ(editor.config().overlay, (OverlayConfig{1, 0.5, 32, "#FF8000"}));
    for (int move = 1; move <= 10; ++move) {
        editor.moveBoundaryLive({}, "A", level, move / 8.);
    }
    EXPECT_EQ(steps(editor), 1);
    EXPECT_EQ(rootOf(editor), columns(0.99, zone(), zone()));
    editor.commitBoundaryDrag();
    EXPECT_EQ(steps(editor), 2);
    editor.undo();
    EXPECT_EQ(rootOf(editor), before);
    editor.moveBoundaryLive({}, "A", level, 0.7);
    editor.resetOverlayAppearance();
    EXPECT_EQ(rootOf(editor), columns(0.7, zone(), zone()));
    EXPECT_FALSE(editor.config().overlay);
    editor.undo();
    editor.moveBoundaryLive({}, "A", level, 0.7);
    editor.undo();
    EXPECT_EQ(editor, untouched);
}

TEST(LayoutEditor, whatFindsNothingToChangeMakesNoStep) {
    LayoutEditor editor = editorOf({landscape("A", zone(3)), portrait("B", columns(0.5, zone(), zone()))});
    editor.split({}, "a", level, Axis::vertical);
    editor.split({}, "A", upright, Axis::vertical);
    editor.split({}, "B", upright, Axis::vertical);
    editor.removeZone({}, "A", level);
    editor.pinOrder(1, {}, "B", level);
    for (const KartoCommand& command : {KartoCommand::moveToZone(3), KartoCommand::cancelCycling}) {
        editor.setCommandKey(*CommandKey::named("z"), command);
        editor.resetCommandKey(command);
    }
    editor.resetCommandKey(KartoCommand::tidy);
    EXPECT_EQ(steps(editor), 0);
    EXPECT_FALSE(editor.config().hotkeys);
    // Unless a live change waits to be recorded.
    editor.moveBoundaryLive({}, "B", upright, 0.25);
    editor.split({}, "nowhere", level, Axis::vertical);
    EXPECT_EQ(steps(editor), 1);
}

TEST(LayoutEditor, keysAndModifiersKeepOneAnother) {
    LayoutEditor editor = LayoutEditor::empty("default");
    EXPECT_EQ(editor.config(), (KartoConfig{"default", {}, {}, {}}));
    using Keys = std::map<std::string, std::string>;
    editor.setCommandKey(*CommandKey::named("z"), KartoCommand::tidy);
    const auto& hotkeys = editor.config().hotkeys;
    EXPECT_THAT(hotkeys->modifiers, ElementsAre("shift", "command", "control", "option"));
    EXPECT_EQ(hotkeys->keys, (Keys{{"tidy", "z"}}));
    editor.setModifiers({"shift", "hyper"});
    EXPECT_EQ(*hotkeys, (HotkeysConfig{{"shift", "hyper"}, Keys{{"tidy", "z"}}}));
    editor.setCommandKey(*CommandKey::named("left"), KartoCommand::tidy);
    editor.setCommandKey(*CommandKey::named("x"), KartoCommand::nextZone);
    EXPECT_EQ(hotkeys->keys, (Keys{{"nextZone", "x"}, {"tidy", "left"}}));
    editor.resetCommandKey(KartoCommand::tidy);
    editor.resetCommandKey(KartoCommand::nextZone);
    EXPECT_EQ(*hotkeys, (HotkeysConfig{{"shift", "hyper"}, {}}));
    EXPECT_EQ(steps(editor), 6);
    while (editor.canUndo()) {
        editor.undo();
    }
    EXPECT_FALSE(hotkeys);
}

} // namespace

} // namespace karto
