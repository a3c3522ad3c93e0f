#include "StageTest.h"

#include "Support/KeyPresser.h"

#include "Karto/Platform/X11/Keyboard/ModifierEvents.h"

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

} // namespace karto::desktop
