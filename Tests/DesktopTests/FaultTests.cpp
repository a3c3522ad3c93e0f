#include "DesktopTest.h"

#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <functional>

namespace karto::desktop {

class FaultTest : public DesktopTest {
protected:
    // The program still does its work for a window that has nothing to do with the fault.
    void expectService() {
        const Application window = Application::probe(desktop, "plain", "survivor", somewhere);
        EXPECT_TRUE(pressUntilFits("AC04", window, zone::studio));
        EXPECT_TRUE(karto->process().isAlive());
    }

    // The program ends by itself with status 1 and one line on standard error.
    void expectRefusal() {
        shouldSurvive = false;
        EXPECT_EQ(karto->process().waitForExit(), (Exit{.status = 1, .signal = {}}));
        const std::string errors = karto->process().errors();
        EXPECT_GT(errors.size(), 20U);
        EXPECT_LE(std::ranges::count(errors, '\n'), 2) << errors;
    }
};

TEST_F(FaultTest, theFocusedWindowClosesDuringACommand) {
    startKarto();
    for (int i = 0; i < 5; ++i) {
        const Application window = Application::probe(desktop, "vanishing", "ghost", somewhere);
        EXPECT_NE(press("AE02", "moveToZone(2)"), "");
        require("the window to close", [&] { return window.frame().isNull(); });
    }
    expectService();
}

TEST_F(FaultTest, aWindowUnderTheNumberOfAClosedOneIsFollowedToo) {
    startKarto();
    const XClient& x = desktop.x();
    const xcb_window_t number = xcb_generate_id(x.connection());
    const auto open = [&] {
        xcb_create_window(x.connection(), XCB_COPY_FROM_PARENT, number, x.root(), 0, 0, 300, 200, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(x.connection(), number);
        require("the window manager", [&] { return x.managerAnswers(patience); });
        x.activate(number);
        require("the window to become active", [&] { return x.activeWindow() == number; });
    };
    open();
    press("AE02", "moveToZone(2)");
    xcb_destroy_window(x.connection(), number);
    require("the window manager", [&] { return x.managerAnswers(patience); });
    open();
    press("AE01", "moveToZone(1)");
    const Rect stray{.x = 750, .y = 500, .width = 400, .height = 260};
    const auto isAt = [&](const Rect& place) {
        return fits(x.frameOf(number).value_or(Rect::null()), place);
    };
    x.place(number, stray);
    require("a stray window", [&] { return isAt(stray); });
    press("AC01", "snapToZone");
    EXPECT_TRUE(eventually([&] { return isAt(zone::three); }));
}

TEST_F(FaultTest, anApplicationThatDoesNotAnswerHoldsNothingUp) {
    startKarto();
    Application stopped = Application::terminal(desktop, "stopped");
    stopped.process().signal(SIGSTOP);
    EXPECT_NE(press("AE02", "moveToZone(2)"), "");
    expectService();
    stopped.process().signal(SIGCONT);
    EXPECT_TRUE(eventually([&] { return stopped.frame().origin() == zone::two.origin(); }));
}

TEST_F(FaultTest, anotherProgramGrabsTheServerForASecond) {
    startKarto();
    const Application window = Application::probe(desktop, "plain", "alpha", somewhere);
    keys.chord("AE02");
    xcb_grab_server(desktop.x().connection());
    keys.chord("AE03");
    // The duration is the fault: four times as long as the program may wait for an answer.
    std::this_thread::sleep_for(1s);
    xcb_ungrab_server(desktop.x().connection());
    desktop.x().flush();
    EXPECT_TRUE(karto->log().next("command moveToZone(3):"));
    EXPECT_TRUE(pressUntilFits("AE01", window, zone::one));
}

TEST_F(FaultTest, theWindowManagerIsKilledAndAnotherOneComes) {
    startKarto();
    const Application window = Application::probe(desktop, "plain", "alpha", somewhere);
    desktop.killWindowManager();
    keys.chord("AE02");
    keys.chord("AD05");
    desktop.startWindowManager("metacity");
    expectService();
}

TEST_F(FaultTest, theServerGoesAway) {
    startKarto();
    desktop.killServer();
    expectRefusal();
}

TEST_F(FaultTest, thereIsNoServerToTalkTo) {
    for (const std::string display : {"", ":4711", "nonsense"}) {
        SCOPED_TRACE(display);
        launchKarto({{"DISPLAY", display}});
        expectRefusal();
    }
}

TEST_F(FaultTest, aSessionWhoseWindowsNobodyMayMoveIsExplained) {
    shouldSurvive = false;
    launchKarto({{"XDG_SESSION_TYPE", "wayland"}});
    EXPECT_TRUE(
        karto->log().next("startup: Accessibility permission not granted, showing the onboarding alert "
                          "and quitting"));
    xcb_window_t alert = XCB_WINDOW_NONE;
    require("the alert", [&] {
        alert = desktop.x().clientOf(karto->process().pid()).value_or(alert);
        return alert != XCB_WINDOW_NONE;
    });
    desktop.x().close(alert);
    EXPECT_EQ(karto->process().waitForExit(), (Exit{.status = 1, .signal = {}}));
}

TEST_F(FaultTest, aWaylandSessionWithoutAnXServerIsExplainedInAWindowOfItsOwn) {
    shouldSurvive = false;
    const std::string folder = desktop.home();
    const Environment session{{"XDG_RUNTIME_DIR", folder},
                              {"WAYLAND_DISPLAY", "private"},
                              {"XDG_SESSION_TYPE", "wayland"},
                              // Has the program's side of the protocol written to standard error.
                              {"WAYLAND_DEBUG", "client"},
                              {"DISPLAY", ""}};
    const ChildProcess compositor = desktop.start(
        {"weston", "--backend=headless-backend.so", "--socket=private", "--idle-time=0"}, session);
    require("the compositor", [&] { return std::filesystem::exists(folder + "/private"); });
    launchKarto(session);
    EXPECT_TRUE(karto->log().next("and Karto cannot work in a Wayland session — quitting"));
    EXPECT_TRUE(karto->log().next("showing the onboarding alert and quitting"));
    EXPECT_TRUE(eventually([&] { return karto->process().errors().contains("set_title(\"Karto\")"); }));
    // Told to end in the middle of the first picture, the toolkit's Wayland side may fall over its own feet.
    require("a window at rest", [&] {
        const auto said = karto->process().errors();
        return !eventually([&] { return karto->process().errors() != said; }, 500ms);
    });
    karto->process().signal(SIGTERM);
    EXPECT_EQ(karto->process().waitForExit(), (Exit{.status = 1, .signal = {}}));
}

TEST_F(FaultTest, aLogThatCannotBeWrittenStopsNothing) {
    std::ofstream(desktop.home() / "Library") << "a file in the way";
    startKarto();
    expectService();
}

TEST_F(FaultTest, aConfigurationThatIsNoneIsExplainedAndTheRestWorks) {
    const auto path = KartoProcess::configurationPath(desktop);
    const std::vector<std::pair<std::string, std::function<void()>>> cases{
        {"a folder", [&] { std::filesystem::create_directory(path); }},
        {"a pipe that nobody fills", [&] { mkfifo(path.c_str(), 0600); }},
        {"a link to nowhere", [&] { std::filesystem::create_symlink("nowhere", path); }},
        {"50 MB",
         [&] {
             std::ofstream{path};
             std::filesystem::resize_file(path, 50'000'000);
         }},
        {"not UTF-8", [&] { std::ofstream(path) << sampleConfiguration << "# \xFF\xFE\n"; }},
        {"not TOML", [&] { std::ofstream(path) << "[[[["; }},
        {"a device that never ends", [&] { std::filesystem::create_symlink("/dev/zero", path); }},
    };
    for (const auto& [name, create] : cases) {
        SCOPED_TRACE(name);
        std::filesystem::remove_all(path);
        create();
        startKarto();
        EXPECT_TRUE(karto->log().next("startup: no config loaded — "));
        expectService();
    }
}

} // namespace karto::desktop
