#pragma once
// A file watch that notices what the test tells it.

#include "Karto/Platform/FileWatch.h"
#include "Karto/Platform/Observers.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace karto::testing {

struct ManualFileWatch final : FileWatch {
    Observers<> observers;

    std::optional<Registration> watch(const std::string& /*path*/, std::function<void()> onChange) override {
        return observers.add(std::move(onChange));
    }
};

} // namespace karto::testing
