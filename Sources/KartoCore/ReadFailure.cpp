#include "KartoCore/ReadFailure.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace karto {

std::string ReadFailure::describe() const {
    const std::string what = kind == Kind::missingKey ? fmt::format("missing \"{}\"", key) : description;
    return path.empty() ? what : fmt::format("{} at {}", what, fmt::join(path, "."));
}

} // namespace karto
