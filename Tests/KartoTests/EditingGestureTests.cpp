#include "Karto/Overlay/EditingGesture.h"

#include "KartoCore/LayoutTreeEditing.h"
#include "Support/Trees.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <vector>

namespace karto::testing {

namespace {

using enum PointerAction;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Size displaySize{.width = 1000, .height = 800};
constexpr ModifierFlags option{ModifierBits::option};

// Zones "f", "sf" and "ss", with boundaries at x = 500 and, right of it, at y = 200.
const LayoutNode three = columns(0.5, zone(), rows(0.25, zone(), zone()));

// "f" and "s" for the branches, "." for the root.
std::string text(const NodePath& path) {
    std::string result;
    for (const Branch branch : path.branches) {
        result += branch == Branch::first ? 'f' : 's';
    }
    return result.empty() ? "." : result;
}

std::string text(const std::optional<NodePath>& path) { return path ? text(*path) : "-"; }

std::string text(const ZoneEdit& edit) {
    if (const auto* split = std::get_if<ZoneEdits::Split>(&edit)) {
        return fmt::format("split {} {}", text(split->path), rawName(split->axis));
    }
    if (const auto* remove = std::get_if<ZoneEdits::Remove>(&edit)) {
        return "remove " + text(remove->path);
    }
    if (const auto* drag = std::get_if<ZoneEdits::DragBoundary>(&edit)) {
        return fmt::format("drag {} {:.4g}", text(drag->path), drag->to);
    }
    return "commit";
}

std::string text(const EditingGesture::Intent& intent) {
    if (const auto* tap = std::get_if<EditingGesture::Tap>(&intent)) {
        return fmt::format("tap {} {}", tap->at.x, tap->at.y);
    }
    return text(std::get<ZoneEdit>(intent));
}

// A gesture above a display whose tree follows the moves of boundaries.
class EditingGestureTest : public ::testing::Test {
protected:
    void work(LayoutNode tree) {
        root = std::move(tree);
        gesture.work(root,
                     {.extent = {.width = displaySize.width * scale, .height = displaySize.height * scale},
                      .scale = scale},
                     pointer);
    }

    // x, y: points of the display.
    void point(PointerAction action, double x, double y, ModifierFlags held = {}) {
        pointer = Point{x * scale, y * scale};
        const auto intent = gesture.take({.action = action, .place = *pointer, .held = held});
        if (!intent) {
            return;
        }
        asked.push_back(text(*intent));
        const auto* edit = std::get_if<ZoneEdit>(&*intent);
        if (const auto* drag = edit != nullptr ? std::get_if<ZoneEdits::DragBoundary>(edit) : nullptr) {
            work(LayoutTreeEditing::moveBoundary(drag->path, drag->to, root));
        }
    }

    void click(double x, double y) {
        point(pressed, x, y);
        point(released, x, y);
    }

    // The marked boundary, the cursor, the zone with buttons and the button pointed at.
    [[nodiscard]] std::string looks() const {
        const auto& view = gesture.view().value();
        const auto axis = gesture.cursorAxis();
        return fmt::format("{} {} {} {}", text(view.hot), axis ? rawName(*axis) : "arrow",
                           text(view.buttonsFor), view.pointedAt ? static_cast<int>(*view.pointedAt) : -1);
    }

    double scale = 1;
    LayoutNode root;
    std::optional<Point> pointer;
    EditingGesture gesture;
    std::vector<std::string> asked;
};

} // namespace

TEST_F(EditingGestureTest, marksWhatThePointerIsOnAtAnyScale) {
    struct Case {
        Point at;
        std::string_view looks;
    };

    for (const double each : {1.0, 1.5, 2.0}) {
        scale = each;
        work(three);
        for (const auto& [at, expected] :
             {Case{{100, 100}, "- arrow f -1"}, Case{{495, 700}, ". vertical f -1"},
              Case{{505, 700}, "- arrow ss -1"}, Case{{700, 203}, "s horizontal ss -1"},
              Case{{501, 202}, ". vertical ss -1"}, Case{{503, 199}, "s horizontal sf -1"},
              // The buttons of the left zone are from 200 to 300 and from 386 to 414.
              Case{{200, 386}, "- arrow f 0"}, Case{{227, 413}, "- arrow f 0"},
              Case{{228, 400}, "- arrow f -1"}, Case{{250, 400}, "- arrow f 1"},
              Case{{299, 400}, "- arrow f 2"}, Case{{300, 400}, "- arrow f -1"}}) {
            point(moved, at.x, at.y);
            EXPECT_EQ(looks(), expected) << at.x << ", " << at.y << " at " << scale;
        }
        point(left, -1, 400);
        EXPECT_EQ(looks(), "- arrow - -1");
    }
    EXPECT_THAT(asked, IsEmpty());
}

TEST_F(EditingGestureTest, dragsSnapUnlessOptionIsHeldAndStayWithinTheirSplit) {
    struct Case {
        Point to;
        ModifierFlags held;
        std::string_view asked;
    };

    const LayoutNode tree = rows(0.5, columns(0.5, zone(), zone()), columns(0.3, zone(), zone()));
    for (const auto& [to, held, expected] :
         {Case{{742, 100}, {}, "drag f 0.75"}, Case{{742, 100}, option, "drag f 0.742"},
          Case{{311, 100}, {}, "drag f 0.3"}, Case{{312, 100}, {}, "drag f 0.312"},
          Case{{-500, 2000}, {}, "drag f 0.01"}, Case{{5000, -9}, option, "drag f 0.99"}}) {
        for (const double each : {1.0, 2.0}) {
            scale = each;
            work(tree);
            asked.clear();
            point(pressed, 500, 100);
            point(dragged, to.x, to.y, held);
            EXPECT_THAT(asked, ElementsAre(expected)) << to.x << " at " << scale;
            point(cancelled, to.x, to.y);
        }
    }
}

TEST_F(EditingGestureTest, aPressThatStaysIsATapWhereItWasPressed) {
    work(three);
    click(100, 100);
    click(500, 700);
    point(pressed, 100, 100);
    point(dragged, 103, 100);
    point(dragged, 150, 100);
    point(released, 102, 102);
    EXPECT_THAT(asked, ElementsAre("tap 100 100", "tap 500 700", "tap 100 100"));
    // Away from every boundary a drag does nothing, even across one.
    asked.clear();
    point(pressed, 100, 100);
    point(dragged, 500, 100);
    EXPECT_EQ(looks(), ". arrow f -1");
    point(released, 600, 100);
    point(pressed, 100, 100);
    point(cancelled, 100, 100);
    EXPECT_THAT(asked, IsEmpty());
    // Without anything to edit there are taps all the same.
    gesture.work(std::nullopt, {.extent = displaySize}, std::nullopt);
    point(moved, 500, 100);
    click(500, 100);
    EXPECT_THAT(asked, ElementsAre("tap 500 100"));
    EXPECT_FALSE(gesture.view());
    EXPECT_EQ(gesture.cursorAxis(), std::nullopt);
}

TEST_F(EditingGestureTest, aButtonWorksWhenReleasedOnItAndIsNeverATapOrADrag) {
    work(three);
    for (const double x : {210, 250, 290}) {
        click(x, 400);
    }
    EXPECT_THAT(asked, ElementsAre("split f vertical", "split f horizontal", "remove f"));
    asked.clear();
    point(pressed, 210, 400);
    EXPECT_TRUE(gesture.view()->isPressed);
    // The buttons stay where they are while one of them is pressed.
    point(dragged, 700, 400);
    EXPECT_EQ(looks(), "- arrow f -1");
    EXPECT_FALSE(gesture.view()->isPressed);
    point(released, 250, 400);
    EXPECT_THAT(asked, IsEmpty());
    point(pressed, 210, 400);
    point(dragged, 700, 400);
    point(dragged, 220, 400);
    EXPECT_TRUE(gesture.view()->isPressed);
    point(released, 220, 400);
    EXPECT_THAT(asked, ElementsAre("split f vertical"));
}

TEST_F(EditingGestureTest, buttonsThatCannotWorkDoNothing) {
    work(zone());
    click(540, 400);
    EXPECT_THAT(asked, IsEmpty());
    EXPECT_EQ(looks(), "- arrow . 2");
    LayoutNode deepest;
    for (int depth = 0; depth < LayoutNode::maximumDepth; ++depth) {
        deepest = depth % 2 == 0 ? columns(0.01, zone(), deepest) : rows(0.01, zone(), deepest);
    }
    work(deepest);
    point(moved, 700, 600);
    const auto buttons = ZoneButtons::area(ZoneButton::splitIntoRows,
                                           root.zones(NormRect::full()).back().rect, {.extent = displaySize});
    click(buttons.x, buttons.y);
    EXPECT_THAT(asked, IsEmpty());
}

TEST_F(EditingGestureTest, aBoundaryThatVanishedIsNotReplacedAndItsDragEndsWithACommit) {
    for (const LayoutNode& other : {zone(), columns(0.5, zone(), columns(0.25, zone(), zone()))}) {
        asked.clear();
        work(three);
        point(pressed, 700, 200);
        point(dragged, 700, 330);
        EXPECT_THAT(asked, ElementsAre("drag s 0.4125"));
        work(other);
        EXPECT_EQ(looks(), "- arrow - -1");
        point(dragged, 700, 340);
        work(three);
        point(dragged, 700, 350);
        EXPECT_EQ(looks(), "- arrow - -1");
        point(released, 700, 350);
        EXPECT_THAT(asked, ElementsAre("drag s 0.4125", "commit"));
        EXPECT_EQ(looks(), "- arrow ss -1");
    }
}

TEST_F(EditingGestureTest, aButtonThatMovedAwayOrLostThePointerDoesNothing) {
    work(three);
    point(pressed, 210, 400);
    point(cancelled, 210, 400);
    EXPECT_FALSE(gesture.isUnderWay());
    EXPECT_EQ(looks(), "- arrow - -1");
    point(pressed, 210, 400);
    work(columns(0.6, zone(), zone()));
    EXPECT_FALSE(gesture.view()->isPressed);
    work(three);
    point(released, 210, 400);
    EXPECT_THAT(asked, IsEmpty());
}

TEST_F(EditingGestureTest, helpShowsOnceThePointerRestsOnAButton) {
    work(three);
    EXPECT_FALSE(gesture.awaitsRest());
    point(moved, 210, 400);
    EXPECT_TRUE(gesture.awaitsRest());
    gesture.rested();
    EXPECT_FALSE(gesture.awaitsRest());
    point(moved, 211, 400);
    work(three);
    EXPECT_TRUE(gesture.view()->showsHelp);
    point(moved, 250, 400);
    EXPECT_FALSE(gesture.view()->showsHelp);
    gesture.rested();
    point(pressed, 250, 400);
    EXPECT_FALSE(gesture.view()->showsHelp);
    EXPECT_FALSE(gesture.awaitsRest());
}

} // namespace karto::testing
