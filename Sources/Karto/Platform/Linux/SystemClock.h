#pragma once
// The computer's clock.

#include "Karto/Platform/WallClock.h"

namespace karto {

class SystemClock final : public WallClock {
public:
    [[nodiscard]] std::chrono::system_clock::time_point now() const override;
};

} // namespace karto
