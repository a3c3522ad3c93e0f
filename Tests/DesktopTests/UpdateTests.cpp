#include "DesktopTest.h"
#include "Support/CannedServer.h"
#include "Support/MemoryUpdates.h"
#include "Support/TemporaryFolder.h"
#include "Support/TrayHost.h"

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <functional>

namespace karto::desktop {

namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::Field;

// The program as it was built for this test: it asks this machine, and knows this key.
constexpr std::uint8_t keySeed = 7;

class UpdateTest : public DesktopTest {
protected:
    // The program seems to come from a package, and the installer is a script.
    UpdateTest() {
        fs::create_directories(programs());
        fs::copy_file(KARTO_UPDATING_PROGRAM, programs() / "karto");
        fs::copy_file(fs::path(KARTO_UPDATING_PROGRAM).parent_path() / "karto-fetch",
                      programs() / "karto-fetch");
        fs::create_directories(desktop.home() / "dpkg/info");
        testing::writeFile(desktop.home() / "dpkg/info/karto.list", (programs() / "karto").native() + "\n");
        installWith("exit 1");
    }

    void TearDown() override {
        answerAgain();
        DesktopTest::TearDown();
    }

    [[nodiscard]] fs::path programs() const { return desktop.home() / "programs"; }

    void installWith(const std::string& script) const {
        testing::writeFile(programs() / "pkexec", "#!/bin/sh\nfor package; do :; done\n" + script + "\n");
        fs::permissions(programs() / "pkexec", fs::perms::owner_all);
    }

    void startUpdatingKarto() {
        auto path = programs().native() + ":/usr/bin:/bin";
        karto = std::make_unique<KartoProcess>(
            desktop, Environment{{"PATH", path}, {"DPKG_ADMINDIR", desktop.home() / "dpkg"}},
            programs() / "karto");
        karto->waitForBanner();
    }

    void answerAgain() {
        stalled = 0;
        stalled.notify_all();
    }

    std::string answer(const std::string& head) {
        stalled.wait(head.at(5));
        if (head.starts_with("GET /feed.toml ")) {
            return testing::okAnswer(testing::FeedSigner(keySeed).sign(feed));
        }
        return head.starts_with("GET /karto.deb ") ? testing::okAnswer(package)
                                                   : "HTTP/1.1 404 Not Found\r\n\r\n";
    }

    [[nodiscard]] static std::string feedFor(const std::string& bytes) {
        auto text = testing::FeedText{.version = "9.0",
                                      .date = "2026-11-20T12:00:00Z",
                                      .believedUntil = "2199-01-01T00:00:00Z",
                                      .package = bytes}
                        .text();
        const std::string elsewhere = "https://karto.example";
        return text.replace(text.find(elsewhere), elsewhere.size(), KARTO_UPDATING_ORIGIN);
    }

    bool logs(const std::string& text) { return karto->log().next(text).has_value(); }

    bool isWindowOpen() {
        const auto window = desktop.x().clientOf(karto->process().pid());
        return window && desktop.x().activeWindow() == *window;
    }

    // Asks for updates with that line of the menu.
    ::testing::AssertionResult opensWindow(const std::string& line) {
        tray.click(line);
        return eventually([&] { return isWindowOpen(); }) ? ::testing::AssertionSuccess()
                                                          : ::testing::AssertionFailure() << "no window";
    }

    // Presses the button that is the default.
    bool pressesUntil(const std::function<bool()>& holds) {
        return eventually([&] {
            keys.tap("RTRN");
            return eventually(holds, 500ms);
        });
    }

    bool installsUntil(const std::string& text) {
        return pressesUntil([&] { return karto->log().next(text, 0ms).has_value(); });
    }

    // What the server does not answer for now: 'f' the feed, 'k' the package.
    std::atomic<char> stalled = 0;
    std::string package = std::string(300'000, 'p');
    std::string feed = feedFor(package);
    testing::CannedServer server{[this](const std::string& head) { return answer(head); },
                                 KARTO_UPDATING_PORT};
    TrayHost tray{desktop.environment().at("DBUS_SESSION_BUS_ADDRESS")};
};

} // namespace

TEST_F(UpdateTest, whatAScheduledCheckFindsIsInstalledAndRunsInTheOldOnesPlace) {
    // The new version is the program as it is built for everybody.
    installWith("cat \"$package\" >" + (desktop.home() / "installed").native() + " && cp " +
                KartoProcess::programPath().native() + ' ' + (programs() / "new").native() + " && mv " +
                (programs() / "new").native() + " " + (programs() / "karto").native());
    startUpdatingKarto();
    ASSERT_TRUE(logs("update: 9.0 is available"));
    EXPECT_TRUE(
        eventually([&] { return tray.text("IconAccessibleDesc") == "Karto — update to 9.0 available"; }));
    EXPECT_FALSE(isWindowOpen());

    ASSERT_TRUE(opensWindow("Update to 9.0…"));
    ASSERT_TRUE(logs("update: 9.0 is available"));
    takePicture("found");
    EXPECT_TRUE(eventually([&] { return tray.text("IconAccessibleDesc") == "Karto"; }));
    EXPECT_THAT(tray.openMenu(), Contains(Field(&BusMenuLine::label, "Check for Updates…")));

    const auto pid = karto->process().pid();
    ASSERT_TRUE(installsUntil("update: 9.0 is handed to the package installer"));
    ASSERT_TRUE(logs("update: installed — starting the new version"));
    EXPECT_EQ(contentsOf(desktop.home() / "installed"), package);
    // The same process, the same configuration, tray and shortcuts.
    ASSERT_TRUE(logs("startup: config loaded"));
    EXPECT_EQ(karto->process().pid(), pid);
    const Application window = Application::probe(desktop, "plain", "survivor", somewhere);
    EXPECT_TRUE(pressUntilFits("AC04", window, zone::studio));
    EXPECT_TRUE(eventually([&] {
        tray.pump();
        return tray.items().size() == 2;
    }));
}

TEST_F(UpdateTest, anotherPackageThanTheSignedOneIsNeverHandedOver) {
    package.back() = '!';
    installWith("touch " + (desktop.home() / "handed-over").native());
    startUpdatingKarto();
    ASSERT_TRUE(opensWindow("Check for Updates…"));
    ASSERT_TRUE(logs("update: 9.0 is available"));
    ASSERT_TRUE(installsUntil("the package is not the one that was signed"));
    takePicture("failed");
    EXPECT_FALSE(fs::exists(desktop.home() / "handed-over"));
    EXPECT_TRUE(fs::is_empty(desktop.home() / ".cache/karto/updates"));
    keys.tap("ESC");
    EXPECT_TRUE(eventually([&] { return !isWindowOpen(); }));
}

TEST_F(UpdateTest, whereverItIsKilledTheNextOneBeginsAnew) {
    // As the true one, it does not outlive who asks.
    installWith("while kill -0 $PPID; do sleep 0.1; done");
    const auto memory = desktop.home() / ".local/state/karto/updates.toml";
    const auto cache = desktop.home() / ".cache/karto/updates";
    constexpr std::array steps{"checking", "found", "downloading", "installing", "the end"};
    for (std::size_t step = 0; step < steps.size(); ++step) {
        SCOPED_TRACE(steps[step]);
        stalled = step == 0 ? 'f' : step == 2 ? 'k' : '\0';
        startUpdatingKarto();
        ASSERT_TRUE(eventually([&] {
            tray.pump();
            return tray.items().size() == step + 1;
        }));
        EXPECT_FALSE(isWindowOpen());
        ASSERT_TRUE(opensWindow("Check for Updates…"));
        ASSERT_TRUE(step == 0 || logs("update: 9.0 is available"));
        if (step == 2) {
            ASSERT_TRUE(pressesUntil([&] { return fs::exists(cache) && !fs::is_empty(cache); }));
        } else if (step > 2) {
            ASSERT_TRUE(installsUntil("update: 9.0 is handed to the package installer"));
        }
        EXPECT_THAT(contentsOf(memory), ::testing::ContainsRegex("^checks.*\nlastCheck = .*Z\n"));
        if (step < steps.size() - 1) {
            ::kill(karto->process().pid(), SIGKILL);
            karto->process().waitForExit();
            answerAgain();
        }
    }
}

} // namespace karto::desktop
