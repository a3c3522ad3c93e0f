#pragma once
// Wakes the program at a time of day, whatever happens to the computer or its clock until then.

#include "Karto/Platform/Registration.h"

#include <chrono>
#include <functional>

namespace karto {

class WallAlarm {
public:
    virtual ~WallAlarm() = default;

    // Runs the task once, from the event loop: when the clock shows that time or a later one, or before then
    // when the clock was set or the computer woke up. Ending the registration cancels it.
    [[nodiscard]] virtual Registration at(std::chrono::system_clock::time_point time,
                                          std::function<void()> task) = 0;
};

} // namespace karto
