#include "DesktopTest.h"
#include "StageTest.h"

#include "Karto/Platform/X11/Server/Activation.h"

namespace karto::desktop {

class FocusTest : public DesktopTest {
protected:
    // As managers do whose focus follows the pointer, when a window moves away from under it.
    void leaveNoneActive() {
        desktop.x().setProperty(desktop.x().root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {XCB_WINDOW_NONE});
    }

    // Once the manager says so.
    void awaitAbove(const Application& upper, const Application& lower) {
        require(upper.name() + " above " + lower.name(), [&] {
            const auto stack = desktop.x().property(desktop.x().root(), "_NET_CLIENT_LIST_STACKING");
            return std::ranges::find(stack, lower.window()) < std::ranges::find(stack, upper.window());
        });
    }
};

TEST_F(FocusTest, aWindowThatLostTheFocusToNoneIsMovedAsLongAsItIsOnTop) {
    startKarto();
    const Application other = Application::probe(desktop, "plain", "other", somewhere);
    EXPECT_TRUE(pressUntilFits("AE03", other, zone::three));
    const Application moved = Application::probe(desktop, "plain", "moved", somewhere);
    EXPECT_TRUE(pressUntilFits("AE01", moved, zone::one));

    leaveNoneActive();
    press("AE02", "moveToZone(2)");
    EXPECT_TRUE(takes(moved, zone::two));
    press("AE03", "moveToZone(3)");
    EXPECT_TRUE(takes(moved, zone::three));

    desktop.x().lower(moved.window());
    awaitAbove(other, moved);
    const std::string line = press("AE01", "moveToZone(1)");
    EXPECT_NE(line.find("no focused window, ignored"), std::string::npos) << line;
    desktop.x().raise(moved.window());
    awaitAbove(moved, other);
    press("AE01", "moveToZone(1)");
    EXPECT_TRUE(takes(moved, zone::one));
}

class ActivationTest : public StageTest {};

TEST_F(ActivationTest, aPersonWhoHasGoneBackIsLeftAlone) {
    const Application before = Application::probe(desktop, "plain", "before", {.width = 300, .height = 200});
    const Application late =
        Application::probe(desktop, "plain", "late", {.x = 400, .width = 300, .height = 200});
    before.activate();
    x11::ToolkitActivation activation(*connection, server(), scheduler);
    activation.activate(late.window());
    require("the window",
            [&] { return reaches([&] { return desktop.x().activeWindow() == late.window(); }); });
    before.activate();
    settle();
    scheduler.advance(1s);
    settle();
    // What the manager does before the first answer it hears of itself before the second.
    for (int i = 0; i < 2; ++i) {
        require("the manager", [this] { return desktop.x().managerAnswers(patience); });
    }
    EXPECT_EQ(desktop.x().activeWindow(), before.window());
}

} // namespace karto::desktop
