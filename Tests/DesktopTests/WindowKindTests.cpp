#include "DesktopTest.h"

#include <fmt/format.h>

#include <tuple>

namespace karto::desktop {

namespace {

enum class Size : std::uint8_t { exact, upToOneStepShort, neverSmaller, itsOwn };

struct Kind {
    std::string name;
    Rect start;
    Size size = Size::exact;
};

Application open(PrivateDesktop& desktop, const Kind& kind) {
    if (kind.name == "terminal") {
        return Application::terminal(desktop, kind.name);
    }
    if (kind.name == "client-decorated") {
        return Application::clientDecorated(desktop, kind.name);
    }
    return Application::probe(desktop, kind.name == "maximized" ? "plain" : kind.name, kind.name, kind.start);
}

} // namespace

class WindowKindTest : public ManagerTest {
protected:
    // As it is before a command.
    void putBack(const Kind& kind, const Application& window, const Rect& frame) {
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
    const std::vector<Kind> kinds{
        {.name = "plain", .start = somewhere},
        {.name = "borderless", .start = somewhere},
        {.name = "dialog", .start = somewhere},
        {.name = "maximized", .start = somewhere},
        {.name = "client-decorated", .start = somewhere},
        {.name = "stepped", .start = somewhere, .size = Size::upToOneStepShort},
        {.name = "terminal", .start = somewhere, .size = Size::upToOneStepShort},
        {.name = "minimum",
         .start = {.x = 20, .y = 20, .width = 900, .height = 600},
         .size = Size::neverSmaller},
        {.name = "fixed", .start = somewhere, .size = Size::itsOwn},
    };
    for (const Kind& kind : kinds) {
        SCOPED_TRACE(kind.name);
        const Application window = open(desktop, kind);
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
        if (kind.size == Size::exact) {
            EXPECT_TRUE(takes(window, zone::one));
            EXPECT_TRUE(outcome.accepted) << line;
        }
        EXPECT_TRUE(takes(window, outcome.result)) << "the log tells another frame: " << line;
        const Rect frame = window.frame();
        EXPECT_EQ(frame.origin(), zone::one.origin());
        if (kind.size == Size::upToOneStepShort) {
            constexpr double longestStep = 20;
            EXPECT_LE(frame.width, zone::one.width);
            EXPECT_LE(frame.height, zone::one.height);
            EXPECT_GT(frame.width, zone::one.width - longestStep);
            EXPECT_GT(frame.height, zone::one.height - longestStep);
            EXPECT_TRUE(outcome.accepted) << line;
        }
        if (kind.size == Size::neverSmaller) {
            EXPECT_EQ(frame.size(), (karto::Size{.width = before.width, .height = zone::one.height}));
            EXPECT_FALSE(outcome.accepted) << line;
        }
        if (kind.size == Size::itsOwn) {
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

} // namespace karto::desktop
