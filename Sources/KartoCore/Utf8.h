#pragma once
// Bytes as Unicode text.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace karto {

// The position of the first byte that is not part of UTF-8 text; absent when all of it is.
std::optional<std::size_t> firstNonText(std::string_view bytes);

// The canonical composed form (NFC), the same for all texts that read the same; bytes that are no text stay
// as they are.
std::string composed(std::string_view text);

} // namespace karto
