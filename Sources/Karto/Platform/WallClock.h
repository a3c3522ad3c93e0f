#pragma once
// The time of day.

#include <chrono>

namespace karto {

class WallClock {
public:
    virtual ~WallClock() = default;

    [[nodiscard]] virtual std::chrono::system_clock::time_point now() const = 0;
};

} // namespace karto
