#include "StageTest.h"

#include "Karto/Platform/X11/Keyboard/ModifierEvents.h"

namespace karto::desktop {

using FrozenServerTest = StageTest;

TEST_F(FrozenServerTest, nothingIsWaitedForBeyondItsBoundAndNothingIsLost) {
    x11::ModifierEvents modifiers(*connection);
    desktop.freezeServer();
    // More than the way to the server holds.
    for (int i = 0; i < 2000; ++i) {
        xcb_no_operation(connection->get());
        connection->flush();
    }
    EXPECT_FALSE(connection->takesRequests());
    const auto request = xcb_get_input_focus(connection->get());
    EXPECT_FALSE(connection->await<xcb_get_input_focus_reply_t>(request, x11::deadlineFromNow(20ms)));
    constexpr std::uint32_t word = 4711;
    xcb_change_property(connection->get(), XCB_PROP_MODE_REPLACE, connection->root(), XCB_ATOM_INTEGER,
                        XCB_ATOM_CARDINAL, 32, 1, &word);
    connection->flush();
    desktop.thawServer();
    EXPECT_TRUE(
        reaches([&] { return desktop.x().property(connection->root(), "INTEGER") == std::vector{word}; }));
    EXPECT_TRUE(connection->takesRequests());
}

} // namespace karto::desktop
