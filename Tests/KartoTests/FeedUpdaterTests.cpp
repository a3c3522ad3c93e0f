#include "Karto/Updates/FeedUpdater.h"

#include "Karto/Adapters/UpdaterService.h"
#include "Karto/Platform/Linux/PosixFileSystem.h"
#include "Support/ManualTime.h"
#include "Support/MemoryCheckLog.h"
#include "Support/MemoryUpdates.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using namespace std::chrono_literals;

const auto start = std::chrono::sys_days(std::chrono::year(2026) / 11 / 23) + 9h;

// A person's computer, on which the program can be started again and again.
class FeedUpdaterTest : public ::testing::Test {
protected:
    FeedUpdaterTest() { startProgram(); }

    void startProgram() {
        program.reset();
        program.emplace(*this);
    }

    void answer(const std::string& version) {
        feed.version = version;
        fetcher.answer(signer.sign(feed.text()));
    }

    void choose(UpdateIntent intent) { window.onIntent(intent); }

    [[nodiscard]] std::size_t checks() const { return fetcher.requests.size(); }

    [[nodiscard]] std::optional<std::string> pending() const { return program->service.pendingVersion(); }

    // Until the next check, within a limit.
    void passToCheck(std::chrono::hours limit = 25h) {
        const auto before = checks();
        for (auto hour = 0h; hour < limit && checks() == before; ++hour) {
            time.pass(1h);
        }
        ASSERT_EQ(checks(), before + 1);
    }

    TemporaryFolder folder;
    std::string memoryPath = folder.path() / "state/karto/updates.toml";
    PosixFileSystem files;
    ManualTime time{start};
    FeedSigner signer{1};
    FeedText feed;
    ManualFetcher fetcher;
    MemoryUpdateStore store;
    ManualInstaller installer;
    MemoryUpdateWindow window;
    MemoryCheckLog log;

    struct Program {
        explicit Program(FeedUpdaterTest& test)
            : updater({.course = {.fetcher = test.fetcher,
                                  .store = test.store,
                                  .installer = test.installer,
                                  .scheduler = test.time.scheduler,
                                  .clock = test.time.clock},
                       .window = test.window,
                       .alarm = test.time,
                       .files = test.files,
                       .log = test.log},
                      {.feedAddress = "https://karto.example/feed",
                       .key = test.signer.key(),
                       .runningVersion = "1.0"},
                      test.memoryPath)
            , service(updater) {
            updater.start();
        }

        FeedUpdater updater;
        UpdaterService service;
    };

    std::optional<Program> program;
};

} // namespace

TEST_F(FeedUpdaterTest, aScheduledCheckLeavesAMarkUntilThePersonAttends) {
    EXPECT_EQ(time.pendingAlarms(), 0U);
    time.pass(FeedUpdater::startDelay);
    EXPECT_EQ(checks(), 1U);
    answer("2.0");
    EXPECT_EQ(pending(), "2.0");
    EXPECT_EQ(window.heading(), "closed");

    program->updater.checkForUpdates();
    EXPECT_EQ(window.heading(), "Looking for updates…");
    EXPECT_EQ(pending(), "2.0");
    answer("2.0");
    EXPECT_EQ(window.heading(), "Karto 2.0 is available");
    EXPECT_EQ(pending(), std::nullopt);
    choose(UpdateIntent::remindLater);
    EXPECT_EQ(window.heading(), "closed");
    passToCheck();
    answer("2.0");
    EXPECT_EQ(pending(), "2.0");

    passToCheck();
    answer("1.0");
    EXPECT_EQ(pending(), std::nullopt);
    EXPECT_THAT(log.takeLines(),
                ElementsAre("update: 2.0 is available", "update: 2.0 is available",
                            "update: 2.0 is available", "update: 1.0 is the newest version"));
}

TEST_F(FeedUpdaterTest, aSkippedVersionIsHeardOfOnlyWhenThePersonAsks) {
    program->updater.checkForUpdates();
    answer("2.0");
    choose(UpdateIntent::skip);
    startProgram();
    passToCheck();
    answer("2.0");
    EXPECT_EQ(pending(), std::nullopt);
    EXPECT_EQ(log.lines.back(), "update: 2.0 is available, but skipped");
    program->updater.checkForUpdates();
    answer("2.0");
    EXPECT_EQ(window.heading(), "Karto 2.0 is available");
    choose(UpdateIntent::close);
    passToCheck();
    answer("2.1");
    EXPECT_EQ(pending(), "2.1");
}

TEST_F(FeedUpdaterTest, checksComeOnceADayThroughAMonth) {
    std::vector<std::chrono::system_clock::time_point> times;
    const auto step = [&](std::chrono::minutes awake, std::chrono::minutes asleep) {
        for (auto minute = 0min; minute < awake; minute += 10min) {
            time.pass(10min);
            if (fetcher.report) {
                times.push_back(time.clock.time);
                answer("1.0");
            }
        }
        time.suspend(asleep);
    };
    for (int day = 0; day < 30; ++day) {
        step(4h, 1h);
        if (day % 5 == 0) {
            startProgram();
        }
        step(6h, 13h);
    }
    EXPECT_GE(times.size(), 29U);
    EXPECT_LE(times.size(), 31U);
    for (std::size_t i = 1; i < times.size(); ++i) {
        EXPECT_GE(times[i] - times[i - 1], 24h - 10min);
        // No later than the morning after.
        EXPECT_LE(times[i] - times[i - 1], 24h + 15h);
    }
    EXPECT_LE(time.pendingAlarms() + time.scheduler.pendingTasks(), 1U);
}

TEST_F(FeedUpdaterTest, aClockThatIsSetNeitherStopsTheChecksNorMultipliesThem) {
    time.pass(1min);
    answer("1.0");
    // Years ahead, and back.
    time.set(start + 24h * 3'000);
    ASSERT_EQ(checks(), 2U);
    // By that clock the feed is stale.
    answer("1.0");
    time.set(start + 1h);
    ASSERT_EQ(checks(), 3U);
    answer("1.0");
    time.set(start + 1h + 1min);
    time.set(start + 59min);
    EXPECT_EQ(checks(), 4U);
    answer("1.0");
    passToCheck();
}

TEST_F(FeedUpdaterTest, aFailedScheduledCheckIsSilentAndTriedAgainLaterAndLater) {
    time.pass(1min);
    std::vector<long> hours;
    for (int failure = 0; failure < 8; ++failure) {
        fetcher.end("no network");
        const auto before = time.clock.time;
        startProgram();
        passToCheck();
        hours.push_back(std::chrono::round<std::chrono::hours>(time.clock.time - before).count());
    }
    EXPECT_THAT(hours, ElementsAre(1, 2, 4, 8, 24, 24, 24, 24));
    EXPECT_EQ(window.heading(), "closed");
    EXPECT_THAT(log.lines, ::testing::SizeIs(8));
    EXPECT_THAT(log.lines, Contains("update: check failed — no network").Times(8));
    answer("1.0");
    time.pass(23h);
    EXPECT_EQ(checks(), 9U);
}

TEST_F(FeedUpdaterTest, aProgramThatEndsDuringTheCheckDoesNotBeginItAgainAtOnce) {
    time.pass(1min);
    for (int starts = 0; starts < 5; ++starts) {
        startProgram();
        time.pass(1min);
        // What it had begun to store is gone.
        EXPECT_EQ(store.cleared, starts + 2);
    }
    EXPECT_EQ(checks(), 1U);
}

TEST_F(FeedUpdaterTest, theSwitchIsRememberedAndEndsAllWaiting) {
    program->updater.setAutomaticallyChecksForUpdates(false);
    startProgram();
    EXPECT_FALSE(program->updater.automaticallyChecksForUpdates());
    time.pass(24h * 10);
    EXPECT_EQ(checks(), 0U);
    EXPECT_EQ(time.pendingAlarms() + time.scheduler.pendingTasks(), 0U);
    program->updater.checkForUpdates();
    answer("1.0");
    EXPECT_EQ(window.heading(), "Karto is up to date");
    choose(UpdateIntent::close);
    program->updater.setAutomaticallyChecksForUpdates(true);
    EXPECT_EQ(time.pendingAlarms(), 1U);
    EXPECT_THAT(log.lines, Contains("update: automatic checks turned off"));
}

TEST_F(FeedUpdaterTest, thereIsOneCheckAndOneWindow) {
    time.pass(1min);
    program->updater.checkForUpdates();
    program->updater.checkForUpdates();
    EXPECT_EQ(checks(), 1U);
    EXPECT_EQ(window.asked, 2);
    answer("2.0");
    EXPECT_EQ(pending(), std::nullopt);
    program->updater.checkForUpdates();
    EXPECT_EQ(checks(), 1U);
    time.pass(24h * 3);
    EXPECT_EQ(checks(), 1U);
    choose(UpdateIntent::install);
    program->updater.checkForUpdates();
    EXPECT_EQ(window.heading(), "Downloading Karto 2.0…");
    choose(UpdateIntent::close);
    EXPECT_EQ(window.heading(), "closed");
    EXPECT_FALSE(fetcher.report);
    EXPECT_EQ(log.lines.back(), "update: 2.0 is cancelled");
}

TEST_F(FeedUpdaterTest, anOldFeedPlayedBackIsRefusedAfterARestart) {
    time.pass(1min);
    answer("1.0");
    feed.date = "2026-11-20T11:59:59Z";
    startProgram();
    program->updater.checkForUpdates();
    answer("2.0");
    EXPECT_EQ(window.heading(), "Karto could not look for updates");
    EXPECT_EQ(window.view->text, "The server sent an older list of updates than before.");
    feed.date = "2026-11-20T12:00:00Z";
    choose(UpdateIntent::retry);
    answer("2.0");
    EXPECT_EQ(window.heading(), "Karto 2.0 is available");
}

TEST_F(FeedUpdaterTest, theWindowTellsEveryStep) {
    feed.package = std::string(4'000'000, 'x');
    program->updater.checkForUpdates();
    answer("2.0");
    EXPECT_EQ(window.view->text, "You have 1.0. The download is 4.0 MB.");
    EXPECT_EQ(window.view->notes, "Zones have rounder corners.");
    choose(UpdateIntent::install);
    time.pass(2s);
    fetcher.send(0, std::string(500'000, 'x'));
    EXPECT_EQ(window.view->progress, 0.125);
    EXPECT_EQ(window.view->progressText, "500 KB of 4.0 MB · about 14 seconds left");
    fetcher.end("the connection was cut");
    EXPECT_EQ(window.heading(), "Karto 2.0 could not be downloaded");
    choose(UpdateIntent::retry);
    fetcher.send(500'000, std::string(3'500'000, 'x'));
    fetcher.end();
    EXPECT_EQ(window.heading(), "Installing Karto 2.0…");
    installer.end(InstallOutcome::Kind::unavailable);
    EXPECT_EQ(window.heading(), "Karto 2.0 is ready to be installed");
    EXPECT_EQ(log.lines.back(),
              "update: 2.0 lies in /cache/" + store.name + " — there is nothing that installs it");
    choose(UpdateIntent::showFile);
    EXPECT_THAT(installer.shown, ElementsAre("/cache/" + store.name));
}

TEST_F(FeedUpdaterTest, aProgramOfNoPackageIsShownItsDownloadPage) {
    installer.isPackaged = false;
    program->updater.checkForUpdates();
    answer("2.0");
    EXPECT_EQ(window.view->buttons.front().text, "Open Download Page");
    choose(UpdateIntent::openPage);
    EXPECT_THAT(installer.shown, ElementsAre("https://karto.example/karto.deb"));
    EXPECT_EQ(window.heading(), "closed");
}

TEST_F(FeedUpdaterTest, aFolderThatCannotBeWrittenIsSaidOnceAndStopsNothing) {
    writeFile(folder.path() / "state", "a file");
    time.pass(1min);
    answer("2.0");
    EXPECT_EQ(pending(), "2.0");
    passToCheck();
    EXPECT_THAT(log.lines,
                Contains(::testing::StartsWith("update: what is remembered of updates cannot be written")));
}

} // namespace karto::testing
