#include "Karto/Platform/Linux/SystemClock.h"

namespace karto {

std::chrono::system_clock::time_point SystemClock::now() const { return std::chrono::system_clock::now(); }

} // namespace karto
