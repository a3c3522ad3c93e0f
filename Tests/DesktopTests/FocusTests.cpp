#include "DesktopTest.h"

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

} // namespace karto::desktop
