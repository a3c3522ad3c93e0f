#pragma once
// A clock that shows the time it was set to.

#include "Karto/Platform/WallClock.h"

namespace karto::testing {

class FixedClock final : public WallClock {
public:
    explicit FixedClock(std::chrono::system_clock::time_point shown)
        : time(shown) {}

    std::chrono::system_clock::time_point time;

    [[nodiscard]] std::chrono::system_clock::time_point now() const override { return time; }
};

} // namespace karto::testing
