#pragma once
// Whether bytes are text.

#include <cstddef>
#include <optional>
#include <string_view>

namespace karto {

// The position of the first byte that is not part of UTF-8 text; absent when all of it is.
std::optional<std::size_t> firstNonText(std::string_view bytes);

} // namespace karto
