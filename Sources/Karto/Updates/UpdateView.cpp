#include "Karto/Updates/UpdateView.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace karto {

namespace {

using Phase = UpdateState::Phase;
using Step = UpdateState::Step;

constexpr double thousand = 1'000;

std::string byteText(std::uint64_t bytes) {
    const auto kilobytes = std::ceil(static_cast<double>(bytes) / thousand);
    return kilobytes < thousand ? fmt::format("{:.0f} KB", kilobytes)
                                : fmt::format("{:.1f} MB", kilobytes / thousand);
}

std::string counted(long count, std::string_view unit) {
    return fmt::format("about {} {}{} left", count, unit, count == 1 ? "" : "s");
}

// By the speed so far; empty until that is known.
std::string timeLeft(const UpdateState& state, std::chrono::system_clock::time_point now) {
    using namespace std::chrono;
    const auto elapsed = duration<double>(now - state.begun).count();
    const auto came = static_cast<double>(state.received - state.receivedBefore);
    if (elapsed < 1 || came <= 0) {
        return {};
    }
    const auto missing = static_cast<double>(state.feed->packageSize - state.received);
    const auto left =
        std::min(missing * elapsed / came, duration<double>(UpdateCourse::longestDownload).count());
    const auto seconds = std::max(1L, std::lround(left));
    constexpr long minute = 60;
    return seconds < 2 * minute ? counted(seconds, "second") : counted(seconds / minute, "minute");
}

UpdateView view(std::string heading, std::string text, std::vector<UpdateButton> buttons) {
    UpdateView view;
    view.heading = std::move(heading);
    view.text = std::move(text);
    view.buttons = std::move(buttons);
    return view;
}

UpdateView waitingView(std::string heading, std::string text) {
    constexpr double unknown = -1;
    auto waiting =
        view(std::move(heading), std::move(text), {{.intent = UpdateIntent::close, .text = "Cancel"}});
    waiting.progress = unknown;
    return waiting;
}

UpdateView downloadingView(const UpdateState& state, std::chrono::system_clock::time_point now) {
    const auto size = state.feed->packageSize;
    auto downloading = waitingView(fmt::format("Downloading Karto {}…", state.feed->version), {});
    downloading.progress = static_cast<double>(state.received) / static_cast<double>(size);
    downloading.progressText = fmt::format("{} of {}", byteText(state.received), byteText(size));
    if (const auto left = timeLeft(state, now); !left.empty()) {
        downloading.progressText += " · " + left;
    }
    return downloading;
}

UpdateView foundView(const UpdateFeed& feed, const UpdateFacts& facts) {
    auto text =
        fmt::format("You have {}. The download is {}.", facts.runningVersion, byteText(feed.packageSize));
    UpdateButton first{.intent = UpdateIntent::install, .text = "Install and Restart"};
    if (!facts.replacesProgram) {
        text = fmt::format("You have {}, which was not installed from a package and cannot replace itself.",
                           facts.runningVersion);
        first = {.intent = UpdateIntent::openPage, .text = "Open Download Page"};
    }
    auto found = view(fmt::format("Karto {} is available", feed.version), std::move(text),
                      {std::move(first),
                       {.intent = UpdateIntent::remindLater, .text = "Remind Me Later"},
                       {.intent = UpdateIntent::skip, .text = "Skip This Version"}});
    found.notes = feed.notes;
    return found;
}

UpdateView verifiedView(const UpdateState& state) {
    return view(
        fmt::format("Karto {} is ready to be installed", state.feed->version),
        fmt::format("The package has been downloaded and checked, but this desktop has nothing that installs "
                    "it. Open it with your package installer, or run in a terminal:\nsudo apt install "
                    "{}\nThen quit Karto and start it again.",
                    state.file),
        {{.intent = UpdateIntent::showFile, .text = "Show File"},
         {.intent = UpdateIntent::close, .text = "Close"}});
}

std::string failedHeading(const UpdateState& state) {
    switch (state.failedStep) {
    case Step::check: return "Karto could not look for updates";
    case Step::download: return fmt::format("Karto {} could not be downloaded", state.feed->version);
    case Step::installation: break;
    }
    return fmt::format("Karto {} could not be installed", state.feed->version);
}

// A clause as a sentence.
std::string sentence(const std::string& clause) {
    auto text = clause;
    if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
        text.front() = static_cast<char>(text.front() - 'a' + 'A');
    }
    if (!text.ends_with('?')) {
        text += '.';
    }
    return text;
}

UpdateView failedView(const UpdateState& state) {
    auto failed = view(failedHeading(state), sentence(state.problem),
                       {{.intent = UpdateIntent::retry, .text = "Try Again"},
                        {.intent = UpdateIntent::close, .text = "Close"}});
    failed.symbol = UpdateView::Symbol::problem;
    return failed;
}

} // namespace

UpdateView updateView(const UpdateState& state, const UpdateFacts& facts) {
    switch (state.phase) {
    case Phase::idle:
    case Phase::checking: return waitingView("Looking for updates…", {});
    case Phase::notFound:
        return view("Karto is up to date", fmt::format("Version {} is the newest.", facts.runningVersion),
                    {{.intent = UpdateIntent::close, .text = "OK"}});
    case Phase::found: return foundView(*state.feed, facts);
    case Phase::downloading: return downloadingView(state, facts.now);
    case Phase::verified: return verifiedView(state);
    case Phase::handedOver:
        return waitingView(fmt::format("Installing Karto {}…", state.feed->version),
                           "Your desktop asks whether it may be installed. Karto starts again when it is.");
    case Phase::failed: break;
    }
    return failedView(state);
}

} // namespace karto
