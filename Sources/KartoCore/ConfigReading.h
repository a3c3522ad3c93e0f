#pragma once
// Reads a configuration from the bytes of its TOML file: whole or not at all, nothing repaired.

#include "KartoCore/Config.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace karto {

// A longer text is no configuration and is refused unread: the parser's time grows with the square of the
// number of tables.
inline constexpr std::size_t maximumConfigBytes = std::size_t{2} << 20U;

struct ReadFailure {
    enum class Kind : std::uint8_t { missingKey, typeMismatch, valueNotFound, corruptedData };

    Kind kind = Kind::corruptedData;
    // Keys from the document root to the table that lacks the key, or to the offending value; an array
    // element reads "Index N", N from 0.
    std::vector<std::string> path;
    // The key that is missing, for missingKey.
    std::string key;
    // What is wrong, for every other kind.
    std::string description;

    // One line: what is wrong, and " at " with the path joined by dots unless the path is empty.
    [[nodiscard]] std::string describe() const;

    bool operator==(const ReadFailure&) const = default;
};

// Bytes: UTF-8 TOML. The first failure in reading order wins: profile, displays, hotkeys, overlay. The result
// has been read, not checked: see KartoConfig::validate().
std::expected<KartoConfig, ReadFailure> readConfig(std::string_view bytes);

} // namespace karto
