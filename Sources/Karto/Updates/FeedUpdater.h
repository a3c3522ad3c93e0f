#pragma once
// Updates from a signed feed: asks it once a day while automatic checks are on, and whenever the person does.
// There is one course and one window. What a scheduled check finds is told to the delegate, and its failures
// to the log alone.

#include "Karto/Log.h"
#include "Karto/Platform/FileSystem.h"
#include "Karto/Platform/UpdaterEngine.h"
#include "Karto/Platform/WallAlarm.h"
#include "Karto/Updates/UpdateCourse.h"
#include "Karto/Updates/UpdateMemory.h"
#include "Karto/Updates/UpdateView.h"

#include <chrono>
#include <memory>
#include <string>

namespace karto {

class FeedUpdater final : public UpdaterEngine {
public:
    // After the start, when whatever starts with the desktop has settled.
    static constexpr std::chrono::seconds startDelay{10};

    // All of them outlive this object.
    struct Means {
        UpdateCourse::Means course;
        UpdateWindow& window;
        WallAlarm& alarm;
        FileSystem& files;
        CheckLog& log;
    };

    // memoryPath: the file in which it remembers.
    FeedUpdater(const Means& means, UpdateSource source, std::string memoryPath);

    void setDelegate(std::shared_ptr<UpdaterDelegate> delegate) override { delegate_ = std::move(delegate); }

    void start() override;
    void checkForUpdates() override;

    [[nodiscard]] bool automaticallyChecksForUpdates() const override { return memory_.checksAutomatically; }

    void setAutomaticallyChecksForUpdates(bool checks) override;

private:
    [[nodiscard]] std::chrono::system_clock::time_point now() const { return means_.course.clock.now(); }

    void setAlarm();
    void checkIfDue();
    void check();
    void stateChanged();
    void logInstallation(UpdateState::Phase before);
    void checkEnded();
    void found(const std::string& version);
    void show(bool isAsked);
    void obey(UpdateIntent intent);
    void endSession();
    void remember();

    void log(const std::string& sentence) { means_.log.append("update: " + sentence); }

    Means means_;
    std::string memoryPath_;
    std::string runningVersion_;
    std::shared_ptr<UpdaterDelegate> delegate_;
    UpdateMemory memory_;
    bool isRemembering_ = true;
    // Whether the window is open; else what goes on was scheduled.
    bool isShown_ = false;
    UpdateState::Phase phase_ = UpdateState::Phase::idle;
    bool hasStarted_ = false;
    Registration startDelay_;
    Registration alarm_;
    UpdateCourse course_;
    WeakCallbacks callbacks_;
};

} // namespace karto
