#pragma once
// How deeply the keys and values of a TOML text nest, told before anything parses it: whoever builds, walks
// or frees the parsed tables recurses once a level, so a text from outside must not choose the depth.

#include <cstddef>
#include <optional>
#include <string_view>

namespace karto::TomlNesting {

// Where a text first nests too deeply.
struct Excess {
    // From 1.
    std::size_t line = 0;
    // The key or header there leads into a display's splits, so it is a layout tree that is too deep.
    bool isInLayoutTree = false;

    bool operator==(const Excess&) const = default;
};

// A level is a part of a table header or of a dotted key, an array or an inline table. Counts somewhat
// generously (the dot of a number passes for a level), never too low for text that is TOML.
std::optional<Excess> beyond(std::size_t limit, std::string_view text);

} // namespace karto::TomlNesting
