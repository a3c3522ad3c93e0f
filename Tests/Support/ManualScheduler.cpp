#include "Support/ManualScheduler.h"

namespace karto::testing {

Registration ManualScheduler::after(std::chrono::milliseconds delay, std::function<void()> task) {
    const Key key{now_ + delay, scheduled_++};
    tasks_.emplace(key, std::move(task));
    return Registration([this, key] { tasks_.erase(key); });
}

void ManualScheduler::advance(std::chrono::milliseconds time) {
    const auto end = now_ + time;
    while (!tasks_.empty() && tasks_.begin()->first.first <= end) {
        auto due = tasks_.extract(tasks_.begin());
        now_ = due.key().first;
        due.mapped()();
    }
    now_ = end;
}

} // namespace karto::testing
