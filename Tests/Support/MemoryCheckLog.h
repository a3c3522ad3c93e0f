#pragma once
// A check log that keeps its lines.

#include "Karto/Log.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace karto::testing {

class MemoryCheckLog final : public CheckLog {
public:
    std::vector<std::string> lines;

    void append(std::string_view message) override { lines.emplace_back(message); }

    // The lines since the last time.
    std::vector<std::string> takeLines() { return std::exchange(lines, {}); }
};

} // namespace karto::testing
