#pragma once
// Delayed tasks on Qt's event loop.
// Most tasks are cancelled before they are due, many for every key that is pressed: one timer, set for the
// earliest task, serves them all.

#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"

#include <QTimer>

#include <cstdint>
#include <map>
#include <utility>

namespace karto {

class QtScheduler final : public Scheduler {
public:
    QtScheduler();

    // Tasks due together run in the order of scheduling.
    Registration after(std::chrono::milliseconds delay, std::function<void()> task) override;

private:
    using Clock = std::chrono::steady_clock;
    // Due time and a running number.
    using Key = std::pair<Clock::time_point, std::uint64_t>;

    void cancel(Key key);
    void runFirst();
    void setAlarm();

    std::map<Key, std::function<void()>> tasks_;
    std::uint64_t scheduled_ = 0;
    QTimer alarm_;
    WeakCallbacks callbacks_;
};

} // namespace karto
