#pragma once
// Which row of a list of windows a cycling gesture selects.

#include <cstddef>
#include <optional>

namespace karto::WindowCycle {

// The first row selected: the one after the focused window; absent when there is nothing to cycle to.
std::optional<std::size_t> first(std::size_t count, std::optional<std::size_t> focusedIndex);

// The row after `index`, wrapping; absent for an empty list.
std::optional<std::size_t> next(std::size_t index, std::size_t count);

} // namespace karto::WindowCycle
