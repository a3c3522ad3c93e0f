#include "Karto/Platform/Linux/QtScheduler.h"

#include <algorithm>

namespace karto {

QtScheduler::QtScheduler() {
    alarm_.setSingleShot(true);
    alarm_.setTimerType(Qt::PreciseTimer);
    alarm_.callOnTimeout([this] { runFirst(); });
}

Registration QtScheduler::after(std::chrono::milliseconds delay, std::function<void()> task) {
    const Key key{Clock::now() + delay, scheduled_++};
    const auto added = tasks_.emplace(key, std::move(task)).first;
    if (added == tasks_.begin()) {
        setAlarm();
    }
    return Registration(callbacks_.wrap([this, key] { cancel(key); }));
}

void QtScheduler::cancel(Key key) {
    const auto task = tasks_.find(key);
    if (task == tasks_.end()) {
        return;
    }
    const bool wasFirst = task == tasks_.begin();
    tasks_.erase(task);
    if (wasFirst) {
        setAlarm();
    }
}

void QtScheduler::runFirst() {
    const auto due = tasks_.extract(tasks_.begin());
    // The task may run an event loop of its own, in which the others fall due.
    setAlarm();
    due.mapped()();
}

void QtScheduler::setAlarm() {
    if (tasks_.empty()) {
        alarm_.stop();
        return;
    }
    const auto left = tasks_.begin()->first.first - Clock::now();
    alarm_.start(std::max(std::chrono::ceil<std::chrono::milliseconds>(left), std::chrono::milliseconds(0)));
}

} // namespace karto
