#pragma once
// Why the bytes of a configuration file are no configuration.

#include <cstdint>
#include <string>
#include <vector>

namespace karto {

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

} // namespace karto
