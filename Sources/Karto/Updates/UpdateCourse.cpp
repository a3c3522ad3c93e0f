#include "Karto/Updates/UpdateCourse.h"

#include "Karto/Updates/PackageVersion.h"
#include "Karto/Updates/Sha256.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <utility>

namespace karto {

namespace {

using Phase = UpdateState::Phase;

constexpr std::size_t digitsInName = 16;

// Another package has another name.
std::string fileName(const UpdateFeed& feed) {
    return fmt::format("karto-{}.deb", feed.packageDigest.text().substr(0, digitsInName));
}

UpdateState::Step stepOf(Phase phase) {
    switch (phase) {
    case Phase::idle:
    case Phase::checking:
    case Phase::notFound: return UpdateState::Step::check;
    case Phase::found:
    case Phase::downloading: return UpdateState::Step::download;
    case Phase::verified:
    case Phase::handedOver:
    case Phase::failed: break;
    }
    return UpdateState::Step::installation;
}

} // namespace

UpdateCourse::UpdateCourse(const Means& means, UpdateSource source, std::function<void()> onChange)
    : means_(means)
    , source_(std::move(source))
    , onChange_(std::move(onChange)) {}

bool UpdateCourse::isBusy() const {
    return state_.phase == Phase::checking || state_.phase == Phase::downloading ||
           state_.phase == Phase::handedOver;
}

void UpdateCourse::check(std::optional<std::chrono::sys_seconds> newestSeen) {
    if (isBusy()) {
        return;
    }
    newestSeen_ = newestSeen;
    feedBytes_.clear();
    state_ = {};
    fetch({.address = source_.feedAddress, .offset = 0}, UpdateFeed::maximumBytes, longestCheck);
    enter(Phase::checking);
}

void UpdateCourse::install() {
    const bool isNext = state_.phase == Phase::found || state_.phase == Phase::failed;
    if (!isNext || !state_.feed) {
        return;
    }
    const auto feed = state_.feed;
    state_ = {};
    state_.phase = Phase::downloading;
    state_.feed = feed;
    state_.begun = means_.clock.now();
    const auto stored = means_.store.open(fileName(*feed));
    if (!stored) {
        return fail(stored.error());
    }
    state_.received = *stored;
    state_.receivedBefore = *stored;
    // A former try may have come as far as this.
    if (*stored >= feed->packageSize) {
        return verifyPackage();
    }
    fetch({.address = feed->packageAddress, .offset = *stored}, feed->packageSize, longestDownload);
    onChange_();
}

void UpdateCourse::cancel() {
    stop();
    means_.store.close();
    if (state_.phase != Phase::idle) {
        state_ = {};
        onChange_();
    }
}

void UpdateCourse::enter(Phase phase) {
    state_.phase = phase;
    onChange_();
}

void UpdateCourse::fail(std::string problem) {
    stop();
    state_.failedStep = stepOf(state_.phase);
    state_.problem = std::move(problem);
    enter(Phase::failed);
}

void UpdateCourse::stop() {
    fetch_.reset();
    longest_.reset();
    silence_.reset();
    installation_.reset();
}

void UpdateCourse::fetch(const FetchRequest& request, std::uint64_t maximumBytes,
                         std::chrono::seconds longest) {
    maximumBytes_ = maximumBytes;
    longest_ = means_.scheduler.after(longest, callbacks_.wrap([this] { fail("the server is too slow"); }));
    waitForBytes();
    fetch_ = means_.fetcher.fetch(
        request,
        {.onBegin = callbacks_.wrap([this](std::uint64_t offset) { begin(offset); }),
         .onBytes = callbacks_.wrap([this](std::string_view bytes) { take(bytes); }),
         .onEnd = callbacks_.wrap([this](const std::optional<std::string>& problem) { end(problem); })});
}

void UpdateCourse::waitForBytes() {
    silence_ = means_.scheduler.after(
        longestSilence, callbacks_.wrap([this] { fail("the server does not answer any more"); }));
}

void UpdateCourse::begin(std::uint64_t offset) {
    if (offset == state_.received) {
        return;
    }
    if (offset != 0) {
        return fail("the server went on at another place than it was asked to");
    }
    if (const auto emptied = means_.store.startOver(); !emptied) {
        return fail(emptied.error());
    }
    state_.received = 0;
    state_.receivedBefore = 0;
}

void UpdateCourse::take(std::string_view bytes) {
    if (bytes.size() > maximumBytes_ - state_.received) {
        return fail("the server sends more than it should");
    }
    state_.received += bytes.size();
    waitForBytes();
    if (state_.phase == Phase::checking) {
        feedBytes_ += bytes;
        return;
    }
    if (const auto stored = means_.store.append(bytes); !stored) {
        return fail(stored.error());
    }
    onChange_();
}

void UpdateCourse::end(const std::optional<std::string>& problem) {
    stop();
    if (problem) {
        return fail(*problem);
    }
    if (state_.phase == Phase::checking) {
        judgeFeed();
    } else {
        verifyPackage();
    }
}

void UpdateCourse::judgeFeed() {
    auto feed = readUpdateFeed(feedBytes_, source_.key);
    if (!feed) {
        return fail(feed.error());
    }
    if (feed->believedUntil < means_.clock.now()) {
        return fail(
            fmt::format("the list of updates was good until {:%Y-%m-%d} only; is the computer's clock right?",
                        fmt::gmtime(feed->believedUntil)));
    }
    if (newestSeen_ && feed->date < *newestSeen_) {
        return fail("the server sent an older list of updates than before");
    }
    const bool isNewer = PackageVersion::compare(feed->version, source_.runningVersion) > 0;
    state_.feed = std::make_shared<const UpdateFeed>(*std::move(feed));
    enter(isNewer ? Phase::found : Phase::notFound);
}

void UpdateCourse::verifyPackage() {
    if (state_.received < state_.feed->packageSize) {
        return fail("the download ended before the package was whole");
    }
    const auto digest = storedDigest();
    if (!digest) {
        return fail(digest.error());
    }
    if (*digest != state_.feed->packageDigest) {
        means_.store.clear();
        return fail("the package is not the one that was signed");
    }
    auto file = means_.store.finish();
    if (!file) {
        return fail(file.error());
    }
    state_.file = *std::move(file);
    enter(Phase::verified);
    if (state_.phase == Phase::verified) {
        handOver();
    }
}

std::expected<Sha256Digest, std::string> UpdateCourse::storedDigest() {
    Sha256 hash;
    if (const auto read = means_.store.read([&hash](std::string_view bytes) { hash.add(bytes); }); !read) {
        return std::unexpected(read.error());
    }
    return hash.digest();
}

void UpdateCourse::handOver() {
    installation_ = means_.installer.install(
        state_.file, callbacks_.wrap([this](const InstallOutcome& outcome) { conclude(outcome); }));
    enter(Phase::handedOver);
}

void UpdateCourse::conclude(const InstallOutcome& outcome) {
    stop();
    switch (outcome.kind) {
    case InstallOutcome::Kind::installed: return means_.installer.restart();
    case InstallOutcome::Kind::refused: return fail("it was not allowed");
    case InstallOutcome::Kind::unavailable: return enter(Phase::verified);
    case InstallOutcome::Kind::failed: return fail(outcome.problem);
    }
}

} // namespace karto
