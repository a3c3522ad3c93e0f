#include "Karto/Platform/Linux/ClockAlarm.h"

#include "Karto/Platform/Descriptor.h"

#include <sys/timerfd.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace karto {

namespace {

struct Alarm {
    Descriptor timer{-1};
    std::function<void()> task;
    Registration readable;
};

Descriptor timerAt(std::chrono::system_clock::time_point time) {
    using namespace std::chrono;
    // A timer that is set to nothing never goes off.
    const auto sinceEpoch = std::max<nanoseconds>(time.time_since_epoch(), 1ns);
    const auto whole = floor<seconds>(sinceEpoch);
    const itimerspec setting{.it_interval = {},
                             .it_value = {.tv_sec = whole.count(), .tv_nsec = (sinceEpoch - whole).count()}};
    Descriptor timer(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC));
    ::timerfd_settime(timer.number(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &setting, nullptr);
    return timer;
}

} // namespace

Registration ClockAlarm::at(std::chrono::system_clock::time_point time, std::function<void()> task) {
    const auto alarm = std::make_shared<Alarm>();
    alarm->timer = timerAt(time);
    alarm->task = std::move(task);
    // It can be read when it has gone off and when it was cancelled, as it is when the clock is set.
    alarm->readable = descriptors_.watch(alarm->timer.number(), [weak = std::weak_ptr(alarm)] {
        if (const auto due = weak.lock()) {
            due->readable.reset();
            due->task();
        }
    });
    return Registration([alarm] { alarm->readable.reset(); });
}

} // namespace karto
