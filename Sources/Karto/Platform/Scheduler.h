#pragma once
// Delayed tasks on the one thread of the program.

#include "Karto/Platform/Registration.h"

#include <chrono>
#include <functional>

namespace karto {

class Scheduler {
public:
    virtual ~Scheduler() = default;

    // Runs the task once after the delay, never before control is back in the event loop. Ending the
    // registration before then cancels it.
    [[nodiscard]] virtual Registration after(std::chrono::milliseconds delay, std::function<void()> task) = 0;
};

} // namespace karto
