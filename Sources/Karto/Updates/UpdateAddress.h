#pragma once
// Which addresses updates may come from.

#include <string_view>

namespace karto {

// Over HTTPS from everywhere; over plain HTTP from this machine alone, where nobody is in between.
bool isSafeUpdateAddress(std::string_view address);

} // namespace karto
