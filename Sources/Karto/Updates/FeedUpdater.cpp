#include "Karto/Updates/FeedUpdater.h"

#include <fmt/format.h>

#include <utility>

namespace karto {

namespace {

using Phase = UpdateState::Phase;

std::string folderOf(const std::string& path) { return path.substr(0, path.rfind('/')); }

} // namespace

FeedUpdater::FeedUpdater(const Means& means, UpdateSource source, std::string memoryPath)
    : means_(means)
    , memoryPath_(std::move(memoryPath))
    , runningVersion_(source.runningVersion)
    , course_(means.course, std::move(source), [this] { stateChanged(); }) {
    means_.window.onIntent = callbacks_.wrap([this](UpdateIntent intent) { obey(intent); });
}

void FeedUpdater::start() {
    const auto remembered = means_.files.read(memoryPath_, UpdateMemory::maximumBytes);
    if (remembered) {
        memory_ = readUpdateMemory(*remembered);
    } else if (remembered.error().kind != FileError::Kind::notFound) {
        log(fmt::format("what was remembered of updates cannot be read — {}", remembered.error().message));
    }
    startDelay_ = means_.course.scheduler.after(startDelay, callbacks_.wrap([this] {
        hasStarted_ = true;
        // What a former run left behind; nothing of this one is there unless something goes on.
        if (course_.state().phase == Phase::idle) {
            means_.course.store.clear();
        }
        setAlarm();
    }));
}

void FeedUpdater::setAutomaticallyChecksForUpdates(bool checks) {
    if (checks == memory_.checksAutomatically) {
        return;
    }
    memory_.checksAutomatically = checks;
    log(fmt::format("automatic checks turned {}", checks ? "on" : "off"));
    remember();
    setAlarm();
}

void FeedUpdater::setAlarm() {
    alarm_.reset();
    const bool waits = hasStarted_ && memory_.checksAutomatically && !isShown_ && !course_.isBusy();
    if (waits) {
        alarm_ = means_.alarm.at(nextCheck(memory_, now()), callbacks_.wrap([this] { checkIfDue(); }));
    }
}

void FeedUpdater::checkIfDue() {
    const auto moment = now();
    if (nextCheck(memory_, moment) <= moment) {
        check();
    } else {
        setAlarm();
    }
}

void FeedUpdater::checkForUpdates() {
    const auto phase = course_.state().phase;
    const bool isAnswered = isShown_ && phase != Phase::notFound && phase != Phase::failed;
    const bool isAnsweredSoon = course_.isBusy();
    isShown_ = true;
    alarm_.reset();
    if (!isAnswered && !isAnsweredSoon) {
        check();
    }
    show(true);
}

void FeedUpdater::check() {
    alarm_.reset();
    memory_.lastCheck = std::chrono::floor<std::chrono::seconds>(now());
    // Until it has ended well: nobody may end it by ending the program and have it begin anew at once.
    ++memory_.failures;
    remember();
    course_.check(memory_.newestFeed);
}

void FeedUpdater::stateChanged() {
    const auto before = std::exchange(phase_, course_.state().phase);
    if (before == Phase::checking && phase_ != before) {
        checkEnded();
    } else if (phase_ != before) {
        logInstallation(before);
    }
    if (isShown_) {
        show(false);
    }
}

void FeedUpdater::logInstallation(Phase before) {
    const auto& state = course_.state();
    if (phase_ == Phase::failed) {
        log(fmt::format("{} could not be installed — {}", state.feed->version, state.problem));
    } else if (phase_ == Phase::handedOver) {
        log(fmt::format("{} is handed to the package installer", state.feed->version));
    } else if (phase_ == Phase::verified && before == Phase::handedOver) {
        log(fmt::format("{} lies in {} — there is nothing that installs it", state.feed->version,
                        state.file));
    }
}

void FeedUpdater::checkEnded() {
    // The delegate and the window may ask for more meanwhile.
    const auto state = course_.state();
    if (state.phase == Phase::failed) {
        log(fmt::format("check failed — {}", state.problem));
    }
    if (state.feed) {
        memory_.failures = 0;
        memory_.newestFeed = state.feed->date;
    }
    if (state.phase == Phase::notFound) {
        log(fmt::format("{} is the newest version", runningVersion_));
    }
    // Of a version that is skipped only who asks hears.
    const bool isSkipped = !isShown_ && state.feed && state.feed->version == memory_.skippedVersion;
    if (state.phase == Phase::found) {
        log(fmt::format("{} is available{}", state.feed->version, isSkipped ? ", but skipped" : ""));
        if (isShown_) {
            delegate_->willHandleShowingUpdate(true, state.feed->version);
            delegate_->didReceiveUserAttention();
        } else if (!isSkipped) {
            found(state.feed->version);
        }
    }
    remember();
    if (isShown_) {
        return;
    }
    course_.cancel();
    if (state.phase == Phase::notFound || isSkipped) {
        delegate_->willFinishUpdateSession();
    }
    setAlarm();
}

void FeedUpdater::found(const std::string& version) {
    const bool isShownHere = !delegate_->supportsGentleScheduledUpdateReminders() ||
                             delegate_->shouldHandleShowingScheduledUpdate(version, false);
    isShown_ = isShownHere;
    delegate_->willHandleShowingUpdate(isShownHere, version);
}

void FeedUpdater::show(bool isAsked) {
    means_.window.show(
        updateView(course_.state(), {.runningVersion = runningVersion_,
                                     .replacesProgram = means_.course.installer.replacesProgram(),
                                     .now = now()}),
        isAsked);
}

void FeedUpdater::obey(UpdateIntent intent) {
    const auto state = course_.state();
    switch (intent) {
    case UpdateIntent::install: return course_.install();
    case UpdateIntent::retry: return state.feed ? course_.install() : check();
    case UpdateIntent::showFile: return means_.course.installer.showFile(state.file);
    case UpdateIntent::openPage: means_.course.installer.openPage(state.feed->page); break;
    case UpdateIntent::skip:
        memory_.skippedVersion = state.feed->version;
        log(fmt::format("{} is skipped", memory_.skippedVersion));
        remember();
        break;
    case UpdateIntent::close:
        if (state.feed && course_.isBusy()) {
            log(fmt::format("{} is cancelled", state.feed->version));
        }
        break;
    case UpdateIntent::remindLater: break;
    }
    endSession();
}

void FeedUpdater::endSession() {
    isShown_ = false;
    course_.cancel();
    means_.window.close();
    delegate_->willFinishUpdateSession();
    setAlarm();
}

void FeedUpdater::remember() {
    auto written = means_.files.createDirectories(folderOf(memoryPath_));
    if (written) {
        written = means_.files.writeAtomically(memoryPath_, writeUpdateMemory(memory_));
    }
    if (!written && std::exchange(isRemembering_, false)) {
        log(fmt::format("what is remembered of updates cannot be written — {}", written.error().message));
    }
    isRemembering_ = written.has_value();
}

} // namespace karto
