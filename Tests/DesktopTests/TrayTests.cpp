#include "DesktopTest.h"
#include "Support/TrayHost.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <fstream>

namespace karto::desktop {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

// A line as a person sees it: "[x]" before one that is on, parentheses around one that cannot be chosen.
std::vector<std::string> shown(const std::vector<BusMenuLine>& menu) {
    std::vector<std::string> lines;
    for (const auto& line : menu) {
        std::string text = line.toggle < 0 ? line.label : (line.toggle > 0 ? "[x] " : "[ ] ") + line.label;
        text = line.isEnabled ? text : fmt::format("({})", text);
        lines.push_back(line.shortcut.empty() ? text : fmt::format("{} {}", text, line.shortcut));
    }
    return lines;
}

// A bus that takes every connection and never says a word.
class SilentBus {
public:
    explicit SilentBus(const std::filesystem::path& path)
        : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
        if (socket_ < 0 || bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
            listen(socket_, 16) != 0) {
            throw std::runtime_error("no socket for a silent bus");
        }
    }

    SilentBus(const SilentBus&) = delete;
    SilentBus(SilentBus&&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;
    SilentBus& operator=(SilentBus&&) = delete;

    ~SilentBus() { close(socket_); }

private:
    int socket_;
};

} // namespace

class TrayTest : public DesktopTest {
protected:
    [[nodiscard]] std::string busAddress() const {
        return desktop.environment().at("DBUS_SESSION_BUS_ADDRESS");
    }

    [[nodiscard]] std::filesystem::path autostartEntry() const {
        return desktop.home() / ".config/autostart/karto.desktop";
    }

    ChildProcess startTrayer() {
        return desktop.start({"trayer", "--edge", "top", "--align", "right", "--height", "24"});
    }

    // The icon in the tray, and the menu that the program itself shows for it.
    std::vector<Rect> docked() { return desktop.x().embeddedFrames("karto"); }

    std::vector<Rect> menus() { return desktop.x().unmanagedFrames("karto"); }

    void expectService() {
        const Application window = Application::probe(desktop, "plain", "survivor", somewhere);
        EXPECT_TRUE(pressUntilFits("AC04", window, zone::studio));
    }
};

TEST_F(TrayTest, anotherProgramReadsEveryLineAndClicksIt) {
    TrayHost tray(busAddress());
    startKarto();
    EXPECT_THAT(shown(tray.openMenu()), ElementsAre("(Profile \"Home\" — 5 of 5 zone(s) active)", "-",
                                                    "Settings… Control+comma", "[ ] Start at Login", "-",
                                                    "About Karto", "Check for Updates…", "Quit Control+q"));
    EXPECT_EQ(tray.text("Title"), "Karto");
    EXPECT_EQ(tray.text("IconAccessibleDesc"), "Karto");
    EXPECT_THAT(tray.iconSides(), ::testing::IsSupersetOf({16, 22, 24, 32, 48}));

    tray.click("Start at Login");
    EXPECT_TRUE(karto->log().next("start at login: turned on"));
    EXPECT_EQ(shown(tray.openMenu()).at(3), "[x] Start at Login");
    std::ofstream(autostartEntry(), std::ios::app) << "Hidden=true\n";
    EXPECT_EQ(shown(tray.openMenu()).at(3), "Start at Login — blocked in System Settings");
    std::filesystem::remove(autostartEntry());

    KartoProcess::writeConfiguration(desktop, "[[[[");
    EXPECT_TRUE(eventually([&] { return shown(tray.openMenu()).front().starts_with("(Config error: "); }));
    tray.pump();
    EXPECT_GT(tray.layoutUpdates(), 0);

    tray.click("About Karto");
    EXPECT_TRUE(ownWindow());
    takePicture("about");
    closeOwnWindow();
    tray.click("Check for Updates…");
    EXPECT_TRUE(ownWindow());
    takePicture("updates");
    // The menu answers while the dialog waits.
    EXPECT_EQ(tray.openMenu().size(), 8U);
    desktop.x().close(desktop.x().activeWindow());
    tray.click("Quit");
    EXPECT_EQ(karto->process().waitForExit(), (Exit{.status = 0, .signal = {}}));
    shouldSurvive = false;
}

TEST_F(TrayTest, aTrayMayComeLateCrashAndComeBack) {
    startKarto();
    for (int i = 0; i < 10; ++i) {
        TrayHost tray(busAddress());
        ASSERT_THAT(tray.openMenu(), Not(IsEmpty())) << i;
        EXPECT_EQ(tray.items().size(), 1U);
        // Every other time it dies in the middle of a click.
        if (i % 2 == 0) {
            tray.click("Start at Login");
        }
    }
    expectService();
}

TEST_F(TrayTest, whereNoProgramListensOnTheBusTheIconIsDocked) {
    launchKarto({{"DBUS_SESSION_BUS_ADDRESS", ""}});
    karto->waitForBanner();
    for (int i = 0; i < 10; ++i) {
        ChildProcess trayer = startTrayer();
        ASSERT_TRUE(eventually([this] { return docked().size() == 1; })) << i;
        const Rect icon = docked().front();
        EXPECT_GE(icon.width, 16);
        takePicture("docked");
        desktop.click(icon);
        ASSERT_TRUE(eventually([this] { return menus().size() == 1; })) << i;
        takePicture("menu");
        // Every other tray dies while the menu is open.
        const auto close = [this] {
            desktop.run({"xdotool", "key", "Escape"});
            EXPECT_TRUE(eventually([this] { return menus().empty(); }));
        };
        if (i % 2 == 0) {
            close();
        }
        trayer.signal(SIGKILL);
        trayer.waitForExit();
        EXPECT_TRUE(eventually([this] { return docked().empty(); }));
        if (i % 2 != 0) {
            close();
        }
    }
    expectService();
}

TEST_F(TrayTest, anIconThatItsTrayLetsGoIsDockedOnceItTakesIconsAgain) {
    const ChildProcess trayer = startTrayer();
    launchKarto({{"DBUS_SESSION_BUS_ADDRESS", ""}});
    ASSERT_TRUE(eventually([this] { return docked().size() == 1; }));
    const auto before = docked();
    desktop.x().inviteAnew("karto", "_NET_SYSTEM_TRAY_S0");
    EXPECT_TRUE(eventually([&] { return docked() == before; }));
}

TEST_F(TrayTest, aTrayOnTheBusIsPreferred) {
    const ChildProcess trayer = startTrayer();
    startKarto();
    ASSERT_TRUE(eventually([this] { return docked().size() == 1; }));
    TrayHost tray(busAddress());
    EXPECT_THAT(tray.openMenu(), Not(IsEmpty()));
    EXPECT_TRUE(eventually([this] { return docked().empty(); }));
}

TEST_F(TrayTest, aBusThatNeverAnswersHoldsNothingUp) {
    const auto path = desktop.home() / "bus";
    const SilentBus bus(path);
    const ChildProcess trayer = startTrayer();
    launchKarto({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path.string()}});
    karto->waitForBanner();
    expectService();
    EXPECT_TRUE(eventually([this] { return docked().size() == 1; }));
    KartoProcess second(desktop, {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path.string()}});
    EXPECT_EQ(second.process().waitForExit(), (Exit{.status = 0, .signal = {}}));
    EXPECT_TRUE(ownWindow());
}

class FurtherStartTest : public ManagerTest {};

INSTANTIATE_TEST_SUITE_P(Managers, FurtherStartTest, onEveryManager, managerName);

TEST_P(FurtherStartTest, opensTheSettingsOfTheOneThatRunsAndEnds) {
    startKarto();
    const Application other = Application::probe(desktop, "plain", "other", somewhere);
    for (int i = 0; i < 2; ++i) {
        // The person types the command there.
        keys.tap("AC01");
        KartoProcess second(desktop);
        EXPECT_EQ(second.process().waitForExit(), (Exit{.status = 0, .signal = {}}));
        EXPECT_TRUE(ownWindow());
        other.activate();
    }
}

TEST_F(TrayTest, aStoppedOneIsNotWaitedForEndlessly) {
    startKarto();
    karto->process().signal(SIGSTOP);
    KartoProcess second(desktop);
    EXPECT_EQ(second.process().waitForExit(), (Exit{.status = 1, .signal = {}}));
    EXPECT_THAT(second.process().errors(), ::testing::HasSubstr("does not answer"));
    karto->process().signal(SIGCONT);
}

} // namespace karto::desktop
