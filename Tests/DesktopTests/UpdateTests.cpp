#include "DesktopTest.h"
#include "Support/CannedServer.h"
#include "Support/MemoryUpdates.h"
#include "Support/TemporaryFolder.h"
#include "Support/TrayHost.h"

#include <gmock/gmock.h>

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

    std::string answer(const std::string& head) {
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

    tray.click("Update to 9.0…");
    ASSERT_TRUE(logs("update: 9.0 is available"));
    ASSERT_TRUE(eventually([&] { return isWindowOpen(); }));
    takePicture("found");
    EXPECT_TRUE(eventually([&] { return tray.text("IconAccessibleDesc") == "Karto"; }));
    EXPECT_THAT(tray.openMenu(), Contains(Field(&BusMenuLine::label, "Check for Updates…")));

    const auto pid = karto->process().pid();
    ASSERT_TRUE(eventually([&] {
        keys.tap("RTRN");
        return karto->log().next("update: 9.0 is handed to the package installer", 500ms).has_value();
    }));
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
    ASSERT_TRUE(logs("update: 9.0 is available"));
    tray.click("Update to 9.0…");
    ASSERT_TRUE(logs("update: 9.0 is available"));
    ASSERT_TRUE(eventually([&] { return isWindowOpen(); }));
    ASSERT_TRUE(eventually([&] {
        keys.tap("RTRN");
        return karto->log().next("the package is not the one that was signed", 500ms).has_value();
    }));
    takePicture("failed");
    EXPECT_FALSE(fs::exists(desktop.home() / "handed-over"));
    EXPECT_TRUE(fs::is_empty(desktop.home() / ".cache/karto/updates"));
    keys.tap("ESC");
    EXPECT_TRUE(eventually([&] { return !isWindowOpen(); }));
}

} // namespace karto::desktop
