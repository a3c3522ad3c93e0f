#pragma once
// A scheduler whose clock the test turns by hand.

#include "Karto/Platform/Scheduler.h"

#include <chrono>
#include <functional>
#include <map>
#include <utility>

namespace karto::testing {

class ManualScheduler final : public Scheduler {
public:
    Registration after(std::chrono::milliseconds delay, std::function<void()> task) override;

    // Turns the clock forward and runs everything that falls due, in order, also what is scheduled on the
    // way.
    void advance(std::chrono::milliseconds time);

    [[nodiscard]] std::size_t pendingTasks() const { return tasks_.size(); }

private:
    // Due time and a running number: tasks due together run in the order of scheduling.
    using Key = std::pair<std::chrono::milliseconds, int>;

    std::chrono::milliseconds now_{0};
    int scheduled_ = 0;
    std::map<Key, std::function<void()>> tasks_;
};

} // namespace karto::testing
