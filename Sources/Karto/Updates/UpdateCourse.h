#pragma once
// The course of one update, from the question for it to the installer. Each step begins only when the one
// before has proved right: a feed is read once its signature is, a package is handed over once its bytes are
// those that were signed. It can be ended at every step, and nothing happens in two steps at once.

#include "Karto/Platform/Registration.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/UpdateFetcher.h"
#include "Karto/Platform/UpdateInstaller.h"
#include "Karto/Platform/UpdateStore.h"
#include "Karto/Platform/WallClock.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Updates/UpdateFeed.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace karto {

struct UpdateState {
    enum class Phase : std::uint8_t {
        idle,
        checking,
        notFound,
        found,
        downloading,
        // The package lies ready; nobody installs it but the person.
        verified,
        // The installer has it.
        handedOver,
        failed,
    };
    enum class Step : std::uint8_t { check, download, installation };

    Phase phase = Phase::idle;
    // What the feed said; null before.
    std::shared_ptr<const UpdateFeed> feed;
    // While downloading, and where and when that began.
    std::uint64_t received = 0;
    std::uint64_t receivedBefore = 0;
    std::chrono::system_clock::time_point begun;
    // The package, once it is verified.
    std::string file;
    // What failed and why, a clause for a person.
    Step failedStep = Step::check;
    std::string problem;

    bool operator==(const UpdateState&) const = default;
};

// Where updates come from.
struct UpdateSource {
    std::string feedAddress;
    FeedKey key;
    std::string runningVersion;
};

class UpdateCourse {
public:
    static constexpr std::chrono::seconds longestCheck{30};
    static constexpr std::chrono::hours longestDownload{2};
    static constexpr std::chrono::seconds longestSilence{30};

    // All of them outlive this object.
    struct Means {
        UpdateFetcher& fetcher;
        UpdateStore& store;
        UpdateInstaller& installer;
        Scheduler& scheduler;
        const WallClock& clock;
    };

    // onChange: called after every change of the state; it may ask for the next step.
    UpdateCourse(const Means& means, UpdateSource source, std::function<void()> onChange);

    [[nodiscard]] const UpdateState& state() const { return state_; }

    // Whether something goes on that will end by itself.
    [[nodiscard]] bool isBusy() const;

    // Asks the feed, unless something goes on. newestSeen: the date of the latest feed ever seen; one from
    // before it is an old one that somebody plays back.
    void check(std::optional<std::chrono::sys_seconds> newestSeen);
    // Fetches what was found and hands it to the installer; once more after that has failed.
    void install();
    // Ends whatever goes on.
    void cancel();

private:
    void enter(UpdateState::Phase phase);
    void fail(std::string problem);
    void stop();
    void fetch(const FetchRequest& request, std::uint64_t maximumBytes, std::chrono::seconds longest);
    void waitForBytes();
    void begin(std::uint64_t offset);
    void take(std::string_view bytes);
    void end(const std::optional<std::string>& problem);
    void judgeFeed();
    void verifyPackage();
    [[nodiscard]] std::expected<Sha256Digest, std::string> storedDigest();
    void handOver();
    void conclude(const InstallOutcome& outcome);

    Means means_;
    UpdateSource source_;
    std::function<void()> onChange_;

    UpdateState state_;
    std::optional<std::chrono::sys_seconds> newestSeen_;
    std::string feedBytes_;
    std::uint64_t maximumBytes_ = 0;

    Registration fetch_;
    Registration longest_;
    Registration silence_;
    Registration installation_;
    WeakCallbacks callbacks_;
};

} // namespace karto
