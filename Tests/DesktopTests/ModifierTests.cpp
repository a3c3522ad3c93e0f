#include "StageTest.h"

#include "Support/KeyPresser.h"

#include "Karto/Platform/X11/Keyboard/ModifierEvents.h"
#include "Karto/Platform/X11/Keyboard/ToolkitKeyboard.h"

#include <gmock/gmock.h>

namespace karto::desktop {

class ModifierTest : public StageTest {
protected:
    KeyPresser keys{desktop.x()};
};

TEST_F(ModifierTest, theHeldSetIsRightAfterAGrabOfTheServerAndANewKeymap) {
    constexpr auto all =
        ModifierBits::shift | ModifierBits::command | ModifierBits::control | ModifierBits::option;
    x11::ModifierEvents modifiers(*connection);
    std::uint32_t reported = 0;
    const auto registration = modifiers.observe([&](ModifierFlags held) { reported = held.bits; });
    const auto become = [&](std::uint32_t bits) {
        return reaches([&] { return reported == bits; }) && modifiers.held().bits == bits;
    };
    xcb_grab_server(server());
    keys.holdHyper();
    desktop.x().settle();
    modifiers.held();
    xcb_ungrab_server(server());
    desktop.x().flush();
    EXPECT_TRUE(become(all));

    desktop.run({"setxkbmap", "-option", "altwin:swap_alt_win"});
    EXPECT_TRUE(become(all));
    keys.releaseHyper();
    EXPECT_TRUE(become(0));
    keys.press("LALT");
    EXPECT_TRUE(become(ModifierBits::command));
    keys.release("LALT");
    EXPECT_TRUE(become(0));
}

TEST_F(ModifierTest, listenersThatLookTogetherAskTheServerOnce) {
    x11::ModifierEvents modifiers(*connection);
    const auto requests = [&] { return xcb_no_operation(connection->get()).sequence; };
    unsigned between = 0;
    bool areTogether = false;
    while (!areTogether) {
        const auto start = std::chrono::steady_clock::now();
        modifiers.held();
        const auto first = requests();
        modifiers.held();
        between = requests() - first - 1;
        areTogether = std::chrono::steady_clock::now() - start < 100ms;
    }
    EXPECT_EQ(between, 0U);
}

TEST_F(ModifierTest, theToolkitHearsOfThemWhileOneOfItsWindowsHasTheKeyboard) {
    const XClient toolkit(desktop.environment().at("DISPLAY"));
    xcb_xkb_use_extension(toolkit.connection(), 1, 0);
    xcb_xkb_select_events(toolkit.connection(), x11::coreKeyboard, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0,
                          XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, nullptr);
    const xcb_window_t window = xcb_generate_id(toolkit.connection());
    xcb_create_window(toolkit.connection(), 0, window, toolkit.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    toolkit.flush();
    const auto heard = [&] {
        // All that the server was told before has happened when it answers.
        settle();
        std::ignore = desktop.x().activeWindow();
        std::ignore = toolkit.activeWindow();
        std::vector<unsigned> modifiers;
        while (const x11::Event event{xcb_poll_for_queued_event(toolkit.connection())}) {
            modifiers.push_back(x11::eventAs<xcb_xkb_state_notify_event_t>(*event).baseMods);
        }
        return modifiers;
    };

    x11::ToolkitKeyboard keyboard(*connection, toolkit.connection());
    EXPECT_THAT(heard(), ::testing::IsEmpty());
    keys.press("LFSH");
    EXPECT_THAT(heard(), ::testing::IsEmpty());
    keyboard.focusMoved(window);
    EXPECT_THAT(heard(), ::testing::ElementsAre(XCB_MOD_MASK_SHIFT));
    keys.tap("LCTL");
    EXPECT_THAT(heard(),
                ::testing::ElementsAre(XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL, XCB_MOD_MASK_SHIFT));
    keyboard.focusMoved(XCB_WINDOW_NONE);
    EXPECT_THAT(heard(), ::testing::IsEmpty());
    keys.release("LFSH");
    EXPECT_THAT(heard(), ::testing::IsEmpty());
}

} // namespace karto::desktop
