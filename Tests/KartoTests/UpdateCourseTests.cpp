#include "Karto/Updates/UpdateCourse.h"

#include "Support/FixedClock.h"
#include "Support/ManualScheduler.h"
#include "Support/MemoryUpdates.h"

#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using Phase = UpdateState::Phase;
using Step = UpdateState::Step;
using namespace std::chrono_literals;

const auto noon = std::chrono::sys_days(std::chrono::year(2026) / 11 / 23) + 12h;

// A course with everything around it.
struct Trip {
    FeedSigner signer{1};
    FeedText feed;
    ManualFetcher fetcher;
    MemoryUpdateStore store;
    ManualInstaller installer;
    ManualScheduler scheduler;
    FixedClock clock{noon};
    int changes = 0;
    UpdateCourse course{
        {.fetcher = fetcher, .store = store, .installer = installer, .scheduler = scheduler, .clock = clock},
        {.feedAddress = "https://karto.example/feed", .key = signer.key(), .runningVersion = "1.0"},
        [this] { ++changes; }};

    [[nodiscard]] Phase phase() const { return course.state().phase; }

    void answerWithFeed() { fetcher.answer(signer.sign(feed.text())); }

    // Leads the course there on the straight road.
    void leadTo(Phase phase) {
        if (phase == Phase::idle) {
            return;
        }
        if (phase == Phase::notFound) {
            feed.version = "0.9";
        }
        course.check({});
        if (phase == Phase::failed) {
            return fetcher.end("no network");
        }
        if (phase != Phase::checking) {
            answerWithFeed();
        }
        if (phase >= Phase::downloading) {
            course.install();
        }
        if (phase >= Phase::verified) {
            fetcher.answer(feed.package);
        }
        if (phase == Phase::verified) {
            installer.end(InstallOutcome::Kind::unavailable);
        }
    }
};

} // namespace

TEST(UpdateCourseTests, everyRequestHasItsAnswerInEveryPhase) {
    // What becomes of each when it is asked to check and to install.
    const std::map<Phase, std::pair<Phase, Phase>> rows{
        {Phase::idle, {Phase::checking, Phase::idle}},
        {Phase::checking, {Phase::checking, Phase::checking}},
        {Phase::notFound, {Phase::checking, Phase::notFound}},
        {Phase::found, {Phase::checking, Phase::downloading}},
        {Phase::downloading, {Phase::downloading, Phase::downloading}},
        {Phase::verified, {Phase::checking, Phase::verified}},
        {Phase::handedOver, {Phase::handedOver, Phase::handedOver}},
        {Phase::failed, {Phase::checking, Phase::failed}},
    };
    for (const auto& [phase, wanted] : rows) {
        const auto label = static_cast<int>(phase);
        Trip trip;
        trip.leadTo(phase);
        ASSERT_EQ(trip.phase(), phase);
        EXPECT_EQ(trip.course.isBusy(), trip.fetcher.report || trip.installer.onEnd) << label;

        const auto before = trip.changes;
        trip.course.install();
        EXPECT_EQ(trip.phase(), wanted.second) << label;
        EXPECT_EQ(trip.changes, before + (trip.phase() == phase ? 0 : 1)) << label;
        trip.course.cancel();
        EXPECT_EQ(trip.course.state(), UpdateState{}) << label;
        EXPECT_FALSE(trip.fetcher.report || trip.installer.onEnd) << label;
        EXPECT_EQ(trip.scheduler.pendingTasks(), 0U) << label;

        Trip another;
        another.leadTo(phase);
        const auto requests = another.fetcher.requests.size();
        another.course.check({});
        EXPECT_EQ(another.phase(), wanted.first) << label;
        const bool hasBegun = phase != Phase::checking && another.phase() == Phase::checking;
        EXPECT_EQ(another.fetcher.requests.size(), requests + (hasBegun ? 1 : 0)) << label;
    }
}

TEST(UpdateCourseTests, whatIsWrongEndsTheCourseInWords) {
    struct Case {
        Phase phase;
        std::function<void(Trip&)> event;
        std::string problem;
    };

    const auto answered = [](auto bytesOf) {
        return [=](Trip& trip) { trip.fetcher.answer(bytesOf(trip)); };
    };
    const auto late = [](auto time) { return [=](Trip& trip) { trip.scheduler.advance(time); }; };
    const auto dated = [](const char* date, const char* until) {
        return [=](Trip& trip) {
            trip.feed.date = date;
            trip.feed.believedUntil = until;
            trip.course.cancel();
            trip.course.check(noon - 24h);
            trip.answerWithFeed();
        };
    };
    const auto installed = [](InstallOutcome::Kind kind, const char* problem) {
        return [=](Trip& trip) { trip.installer.end(kind, problem); };
    };
    const auto stored = [](auto next) {
        return [=](Trip& trip) {
            trip.store.problem = "no space";
            next(trip);
        };
    };
    const std::vector<Case> cases{
        {Phase::checking, [](Trip& trip) { trip.fetcher.end("no network"); }, "no network"},
        {Phase::checking, answered([](Trip& trip) { return FeedSigner(2).sign(trip.feed.text()); }),
         "the signature of the list of updates is wrong"},
        {Phase::checking, answered([](Trip&) { return std::string(UpdateFeed::maximumBytes + 1, ' '); }),
         "the server sends more than it should"},
        {Phase::checking, late(UpdateCourse::longestCheck), "the server is too slow"},
        {Phase::checking, dated("2026-11-01T00:00:00Z", "2026-11-22T00:00:00Z"),
         "the list of updates was good until 2026-11-22 only; is the computer's clock right?"},
        {Phase::checking, dated("2026-11-22T11:59:59Z", "2027-01-01T00:00:00Z"),
         "the server sent an older list of updates than before"},
        {Phase::found, stored([](Trip& trip) { trip.course.install(); }), "no space"},
        {Phase::downloading, stored([](Trip& trip) { trip.fetcher.send(0, "x"); }), "no space"},
        {Phase::downloading, answered([](Trip& trip) { return trip.feed.package.substr(1); }),
         "the download ended before the package was whole"},
        {Phase::downloading, answered([](Trip& trip) { return trip.feed.package + "x"; }),
         "the server sends more than it should"},
        {Phase::downloading, answered([](Trip& trip) { return "The" + trip.feed.package.substr(3); }),
         "the package is not the one that was signed"},
        {Phase::downloading, [](Trip& trip) { trip.fetcher.send(3, "x"); },
         "the server went on at another place than it was asked to"},
        {Phase::downloading, late(UpdateCourse::longestSilence), "the server does not answer any more"},
        {Phase::handedOver, installed(InstallOutcome::Kind::refused, ""), "it was not allowed"},
        {Phase::handedOver, installed(InstallOutcome::Kind::failed, "a conflict"), "a conflict"},
    };
    for (const auto& [phase, event, problem] : cases) {
        Trip trip;
        trip.leadTo(phase);
        event(trip);
        EXPECT_EQ(trip.phase(), Phase::failed) << problem;
        const auto step = phase == Phase::checking     ? Step::check
                          : phase == Phase::handedOver ? Step::installation
                                                       : Step::download;
        EXPECT_EQ(trip.course.state().failedStep, step) << problem;
        EXPECT_EQ(trip.course.state().problem, problem);
        EXPECT_FALSE(trip.fetcher.report || trip.installer.onEnd) << problem;
        EXPECT_EQ(trip.scheduler.pendingTasks(), 0U) << problem;
        EXPECT_EQ(trip.installer.packages.size(), phase == Phase::handedOver ? 1U : 0U) << problem;
        EXPECT_EQ(trip.installer.restarts, 0) << problem;
    }
}

TEST(UpdateCourseTests, anEndlessDripOfBytesIsEnded) {
    Trip trip;
    trip.feed.package = std::string(1'000, 'x');
    trip.leadTo(Phase::downloading);
    for (int sent = 0; trip.phase() == Phase::downloading && sent < 1'000; ++sent) {
        trip.fetcher.send(static_cast<std::uint64_t>(sent), "x");
        trip.scheduler.advance(UpdateCourse::longestSilence - 1s);
    }
    EXPECT_EQ(trip.course.state().problem, "the server is too slow");
}

TEST(UpdateCourseTests, aCutDownloadGoesOnWhereItEnded) {
    for (const bool serverGoesOn : {true, false}) {
        Trip trip;
        trip.leadTo(Phase::downloading);
        trip.fetcher.send(0, trip.feed.package.substr(0, 9));
        trip.fetcher.end("cut");
        trip.course.install();
        EXPECT_EQ(trip.fetcher.requests.back().offset, 9U);
        EXPECT_EQ(trip.course.state().received, 9U);
        const auto from = serverGoesOn ? 9U : 0U;
        trip.fetcher.send(from, trip.feed.package.substr(from));
        trip.fetcher.end();
        EXPECT_EQ(trip.phase(), Phase::handedOver);
    }
}

TEST(UpdateCourseTests, goingOnWithAnotherFileIsFoundOutAndBegunAnew) {
    Trip trip;
    trip.leadTo(Phase::downloading);
    trip.fetcher.send(0, "other");
    trip.fetcher.end("cut");
    trip.course.install();
    trip.fetcher.send(5, trip.feed.package.substr(5));
    trip.fetcher.end();
    EXPECT_EQ(trip.course.state().problem, "the package is not the one that was signed");
    trip.course.install();
    EXPECT_EQ(trip.fetcher.requests.back().offset, 0U);
    trip.fetcher.answer(trip.feed.package);
    EXPECT_EQ(trip.phase(), Phase::handedOver);
}

TEST(UpdateCourseTests, aRefusedInstallationIsVerifiedAndHandedOverOnceMore) {
    Trip trip;
    trip.leadTo(Phase::handedOver);
    const auto fetches = trip.fetcher.requests.size();
    trip.installer.end(InstallOutcome::Kind::refused);
    trip.course.install();
    EXPECT_EQ(trip.fetcher.requests.size(), fetches);
    EXPECT_THAT(trip.installer.packages, ::testing::Each("/cache/" + trip.store.name));
    EXPECT_EQ(trip.installer.packages.size(), 2U);

    trip.installer.end(InstallOutcome::Kind::refused);
    trip.store.bytes.back() = '!';
    trip.course.install();
    EXPECT_EQ(trip.phase(), Phase::failed);
    EXPECT_EQ(trip.installer.packages.size(), 2U);
}

} // namespace karto::testing
