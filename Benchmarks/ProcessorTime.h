#pragma once

#include <sys/types.h>

#include <chrono>

namespace karto::bench {

// What all threads of a running process have spent on a processor so far.
std::chrono::nanoseconds processorTime(pid_t process);

} // namespace karto::bench
