#include "StageTest.h"

#include "Karto/Platform/X11/Keyboard/ModifierEvents.h"

namespace karto::desktop {

using FrozenServerTest = StageTest;

TEST_F(FrozenServerTest, nothingIsWaitedForBeyondItsBoundAndNothingIsLost) {
    const x11::ModifierEvents modifiers(*connection);
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

// As when the next key press is there before the command of the last one has ended.
TEST_F(FrozenServerTest, othersHaveTheirTurnThoughEventsComeWithoutEnd) {
    const auto watch = connection->select(connection->root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    const auto giveUp = std::chrono::steady_clock::now() + patience;
    bool isTold = false;
    const auto askForAnother = [&] {
        constexpr std::uint32_t word = 4711;
        xcb_change_property(connection->get(), XCB_PROP_MODE_REPLACE, connection->root(), XCB_ATOM_INTEGER,
                            XCB_ATOM_CARDINAL, 32, 1, &word);
        settle();
    };
    const auto events = connection->observe([&](const xcb_generic_event_t& event) {
        if (x11::eventCode(event) == XCB_PROPERTY_NOTIFY && !isTold &&
            std::chrono::steady_clock::now() < giveUp) {
            askForAnother();
        }
    });
    const auto lulls = connection->observeLulls([&] { isTold = true; });
    askForAnother();
    EXPECT_TRUE(reaches([&] { return isTold; }));
    EXPECT_LT(std::chrono::steady_clock::now(), giveUp);
}

} // namespace karto::desktop
