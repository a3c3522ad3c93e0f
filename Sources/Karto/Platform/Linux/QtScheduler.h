#pragma once
// Delayed tasks on Qt's event loop.

#include "Karto/Platform/Scheduler.h"

namespace karto {

class QtScheduler final : public Scheduler {
public:
    Registration after(std::chrono::milliseconds delay, std::function<void()> task) override;
};

} // namespace karto
