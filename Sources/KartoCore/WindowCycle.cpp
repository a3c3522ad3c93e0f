#include "KartoCore/WindowCycle.h"

namespace karto::WindowCycle {

std::optional<std::size_t> first(std::size_t count, std::optional<std::size_t> focusedIndex) {
    if (count < 2) {
        return std::nullopt;
    }
    return focusedIndex ? (*focusedIndex + 1) % count : 0;
}

std::optional<std::size_t> next(std::size_t index, std::size_t count) {
    if (count < 1) {
        return std::nullopt;
    }
    return (index + 1) % count;
}

} // namespace karto::WindowCycle
