#pragma once
// What it takes to parse a TOML text, told before anything parses it, so that a text from outside chooses
// neither the depth of the stack nor the time.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace karto::TomlCost {

struct Limits {
    // A level is a part of a table header or of a dotted key, an array or an inline table. Whoever builds,
    // walks or frees the parsed tables recurses once a level.
    std::size_t nesting = 0;
    // The parser keeps a list of the tables that it made because a longer name passes them, and one of the
    // arrays of tables. Headers and dotted keys make it look a table up there, comparing it with one entry
    // after the other.
    std::uint64_t comparisons = 0;
};

// Where a text first exceeds a limit.
struct Excess {
    enum class Kind : std::uint8_t {
        nesting,
        // The key or header leads into a display's splits, so it is a layout tree that nests too deeply.
        nestingOfLayoutTree,
        comparisons,
    };

    Kind kind = Kind::nesting;
    // From 1.
    std::size_t line = 0;
};

// Counts somewhat generously (the dot of a number in an array passes for that of a key), never too low for
// text that is TOML.
std::optional<Excess> beyond(const Limits& limits, std::string_view text);

} // namespace karto::TomlCost
