#pragma once
// What a person is told where Karto may not move windows.

#include "Karto/Log.h"
#include "Karto/Platform/ApplicationHost.h"

#include <functional>
#include <optional>
#include <string>

namespace karto {

// Shows it, and says so in the log. problem: what is wrong on this desktop, one sentence, if that is known.
void explainDistrust(const std::optional<std::string>& problem, ApplicationHost& host,
                     const std::function<void()>& openSettings, CheckLog& log);

} // namespace karto
