#pragma once
// A program that works for this one and is heard of while it does.

#include "Karto/Platform/Linux/Programs.h"
#include "Karto/Platform/Registration.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace karto {

struct ChildEnd {
    // Absent when it could not be started, or was ended by a signal.
    std::optional<int> status;
    // What it wrote to its standard error.
    std::string complaint;
};

struct ChildReport {
    std::function<void(std::string_view bytes)> onOutput;
    std::function<void(const ChildEnd& end)> onEnd;
};

enum class ChildSignal : std::uint8_t { kill, terminate };

// Starts the program, without input. Reports come from the event loop. Ending the registration sends it the
// signal, and nothing more is heard of it.
[[nodiscard]] Registration runChild(const ProgramCall& call, ChildReport report, ChildSignal signal);

} // namespace karto
