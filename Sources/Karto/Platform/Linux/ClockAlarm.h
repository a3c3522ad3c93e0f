#pragma once
// Alarms by the computer's clock, from the kernel: they also go off right after the computer was asleep, and
// when somebody sets the clock. Nothing wakes up before.

#include "Karto/Platform/DescriptorWatch.h"
#include "Karto/Platform/WallAlarm.h"

namespace karto {

// Registrations end before the object does.
class ClockAlarm final : public WallAlarm {
public:
    explicit ClockAlarm(DescriptorWatch& descriptors)
        : descriptors_(descriptors) {}

    Registration at(std::chrono::system_clock::time_point time, std::function<void()> task) override;

private:
    DescriptorWatch& descriptors_;
};

} // namespace karto
