#pragma once
// The parsed TOML text of a configuration file, or a sentence that says why there is none. Whatever the bytes
// are, parsing them takes bounded time and stack.

#include "KartoCore/ReadFailure.h"

#include <cstddef>
#include <expected>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace karto {

// Room for 10,000 zones at any depth. A longer text is refused unread.
inline constexpr std::size_t maximumConfigBytes = std::size_t{10} << 20U;

// What the parser made of a text. Defined in TomlTables.h, which the readings of a document include.
struct TomlTables;

using TomlDocument = std::expected<std::shared_ptr<const TomlTables>, ReadFailure>;

TomlDocument parseTomlDocument(std::string_view bytes);

// A layout tree nests deeper than LayoutNode::maximumDepth at `path`.
ReadFailure nestedTooDeeply(std::vector<std::string> path);

} // namespace karto
