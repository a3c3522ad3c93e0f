#include "DesktopTest.h"
#include "Support/WindowKinds.h"

#include <fmt/format.h>

#include <tuple>

namespace karto::desktop {

class WindowKindTest : public ManagerTest {
protected:
    // As it is before a command.
    void putBack(const WindowKind& kind, const Application& window, const Rect& frame) {
        const XClient& x = desktop.x();
        // Asked for until it is so: the program may not have let go of the window yet.
        const auto ask = [&](auto request, auto isCarriedOut) {
            require("the window as it was before", [&] {
                request();
                return eventually(isCarriedOut, 300ms);
            });
        };
        if (kind.name == "maximized") {
            ask([&] { x.maximize(window.window()); },
                [&] {
                    return fits(window.frame(), zone::studio) &&
                           x.hasState(window.window(), "_NET_WM_STATE_MAXIMIZED_VERT");
                });
        } else if (!fits(window.frame(), frame)) {
            ask([&] { x.place(window.window(), frame); }, [&] { return fits(window.frame(), frame); });
        }
    }

    // The program gives a window that does not do as it is told at least so long.
    static constexpr std::chrono::milliseconds shortestPatience{220};
};

INSTANTIATE_TEST_SUITE_P(On, WindowKindTest, onEveryManager, managerName);

TEST_P(WindowKindTest, everyWindowTakesItsZoneAsExactlyAsItCanAndTheLogSaysWhenItCannot) {
    startKarto();
    for (const WindowKind& kind : windowKinds) {
        SCOPED_TRACE(kind.name);
        const Application window = kind.open(desktop);
        const Rect before = window.frame();
        std::string line;
        // What a busy machine gave no time for says nothing about the program: asked for again from where it
        // was.
        require("an answer before the program gives up", [&] {
            putBack(kind, window, before);
            const auto start = std::chrono::steady_clock::now();
            line = press("AE01", "moveToZone(1)");
            return std::chrono::steady_clock::now() - start < shortestPatience;
        });
        const Outcome outcome = Outcome::in(line).value_or(Outcome{});
        if (kind.size == WindowKind::Size::exact) {
            EXPECT_TRUE(takes(window, zone::one));
            EXPECT_TRUE(outcome.accepted) << line;
        }
        EXPECT_TRUE(takes(window, outcome.result)) << "the log tells another frame: " << line;
        const Rect frame = window.frame();
        EXPECT_EQ(frame.origin(), zone::one.origin());
        if (kind.size == WindowKind::Size::upToOneStepShort) {
            constexpr double longestStep = 20;
            EXPECT_LE(frame.width, zone::one.width);
            EXPECT_LE(frame.height, zone::one.height);
            EXPECT_GT(frame.width, zone::one.width - longestStep);
            EXPECT_GT(frame.height, zone::one.height - longestStep);
            EXPECT_TRUE(outcome.accepted) << line;
        }
        if (kind.size == WindowKind::Size::neverSmaller) {
            EXPECT_EQ(frame.size(), (Size{.width = before.width, .height = zone::one.height}));
            EXPECT_FALSE(outcome.accepted) << line;
        }
        if (kind.size == WindowKind::Size::itsOwn) {
            EXPECT_EQ(frame.size(), before.size());
            EXPECT_FALSE(outcome.accepted) << line;
        }
    }
}

TEST_P(WindowKindTest, aFullScreenWindowStaysAsItIs) {
    startKarto();
    const Application window = Application::probe(desktop, "plain", "cinema", somewhere);
    desktop.x().makeFullScreen(window.window());
    require("a full-screen window", [&] {
        return fits(window.frame(), zone::studio) &&
               desktop.x().hasState(window.window(), "_NET_WM_STATE_FULLSCREEN");
    });
    const std::string line = press("AE01", "moveToZone(1)");
    EXPECT_NE(line.find("focused window is fullscreen, ignored"), std::string::npos) << line;
    EXPECT_TRUE(takes(window, zone::studio));
}

// With its shadow it is wider than the display, and some managers push it when it grows beyond the edge.
TEST_P(WindowKindTest, aWindowWithAShadowFillsItsDisplay) {
    startKarto();
    const Application window = Application::probe(desktop, "shadowed", "paper", somewhere);
    press("AE02", "moveToZone(2)");
    EXPECT_TRUE(takes(window, zone::two));
    const std::string line = press("AC04", "fillDisplay");
    EXPECT_EQ(Outcome::in(line).value_or(Outcome{}).result, zone::studio) << line;
    EXPECT_TRUE(takes(window, zone::studio));
}

class UntoldFrameTest : public DesktopTest {};

TEST_F(UntoldFrameTest, aFrameThatTheManagerDoesNotTellOfIsMeasured) {
    const Application window = Application::probe(desktop, "plain", "letter", somewhere);
    const Rect told = window.frame();
    xcb_delete_property(desktop.x().connection(), window.window(), desktop.x().atom("_NET_FRAME_EXTENTS"));
    desktop.x().settle();
    ASSERT_EQ(window.frame(), told);
    startKarto();
    for (const auto& [key, number, place] :
         {std::tuple{"AE01", 1, zone::one}, {"AE02", 2, zone::two}, {"AE03", 3, zone::three}}) {
        const std::string line = press(key, fmt::format("moveToZone({})", number));
        EXPECT_EQ(Outcome::in(line).value_or(Outcome{}).result, place) << line;
        EXPECT_TRUE(takes(window, place));
    }
}

class OldRequestTest : public DesktopTest {};

TEST_F(OldRequestTest, everyGravityLeadsToTheSamePlace) {
    const XClient& x = desktop.x();
    auto supported = x.property(x.root(), "_NET_SUPPORTED");
    std::erase(supported, x.atom("_NET_MOVERESIZE_WINDOW"));
    x.setProperty(x.root(), "_NET_SUPPORTED", XCB_ATOM_ATOM, supported);
    x.settle();
    startKarto();
    for (const std::string kind : {"plain", "static"}) {
        const Application window = Application::probe(desktop, kind, kind, somewhere);
        press("AE03", "moveToZone(3)");
        EXPECT_TRUE(takes(window, zone::three));
    }
}

} // namespace karto::desktop
