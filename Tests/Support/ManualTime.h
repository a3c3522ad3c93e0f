#pragma once
// A computer's time in a test's hands: its clock, its alarms and its delayed tasks, suspends and set clocks
// included.

#include "Karto/Platform/WallAlarm.h"
#include "Karto/Platform/WallClock.h"
#include "Support/ManualScheduler.h"

#include <algorithm>
#include <map>
#include <utility>

namespace karto::testing {

class ManualTime final : public WallAlarm {
public:
    explicit ManualTime(std::chrono::system_clock::time_point start)
        : clock(start) {}

    // As with every clock, whoever asks again finds it later.
    struct Clock final : WallClock {
        explicit Clock(std::chrono::system_clock::time_point start)
            : time(start) {}

        mutable std::chrono::system_clock::time_point time;

        [[nodiscard]] std::chrono::system_clock::time_point now() const override {
            return time += std::chrono::nanoseconds(1);
        }
    };

    Clock clock;
    ManualScheduler scheduler;

    Registration at(std::chrono::system_clock::time_point time, std::function<void()> task) override {
        const std::pair key{time, set_++};
        alarms_.emplace(key, std::move(task));
        return Registration([this, key] { alarms_.erase(key); });
    }

    // Time passes while the computer is awake.
    void pass(std::chrono::milliseconds time) {
        const auto end = clock.time + time;
        do {
            const auto next =
                alarms_.empty() ? end : std::clamp(alarms_.begin()->first.first, clock.time, end);
            tick(next - clock.time);
            while (!alarms_.empty() && alarms_.begin()->first.first <= clock.time) {
                ring();
            }
        } while (clock.time < end);
    }

    // What delays does not go on meanwhile.
    void suspend(std::chrono::milliseconds time) { set(clock.time + time); }

    void set(std::chrono::system_clock::time_point time) {
        clock.time = time;
        for (auto left = alarms_.size(); left > 0 && !alarms_.empty(); --left) {
            ring();
        }
    }

    [[nodiscard]] std::size_t pendingAlarms() const { return alarms_.size(); }

private:
    void tick(std::chrono::system_clock::duration time) {
        clock.time += time;
        scheduler.advance(std::chrono::duration_cast<std::chrono::milliseconds>(time));
    }

    void ring() {
        const auto due = alarms_.extract(alarms_.begin());
        due.mapped()();
    }

    int set_ = 0;
    std::map<std::pair<std::chrono::system_clock::time_point, int>, std::function<void()>> alarms_;
};

} // namespace karto::testing
