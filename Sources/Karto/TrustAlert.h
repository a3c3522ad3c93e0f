#pragma once
// What a person is told where Karto may not move windows.

#include "Karto/Log.h"
#include "Karto/Platform/Accessibility.h"
#include "Karto/Platform/ApplicationHost.h"

#include <functional>
#include <optional>

namespace karto {

// Shows it, and says so in the log. problem: what is wrong on this desktop, if that is known.
void explainDistrust(const std::optional<TrustProblem>& problem, ApplicationHost& host,
                     const std::function<void()>& openSettings, CheckLog& log);

} // namespace karto
