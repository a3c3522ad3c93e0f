#pragma once
// The parsed TOML text of a configuration, or a sentence that says why there is none. Whatever the bytes are,
// parsing them takes bounded time and stack.

#include "KartoCore/ConfigReading.h"

#include <toml++/toml.h>

#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace karto {

std::expected<toml::table, ReadFailure> parseTomlDocument(std::string_view bytes);

// A layout tree nests deeper than LayoutNode::maximumDepth at `path`.
ReadFailure nestedTooDeeply(std::vector<std::string> path);

} // namespace karto
