#include "Karto/Updates/PackageVersion.h"

#include <algorithm>
#include <cstddef>

namespace karto::PackageVersion {

namespace {

constexpr std::size_t maximumLength = 64;
constexpr std::string_view digits = "0123456789";
constexpr std::string_view allowed = "0123456789.+~-:abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

bool isDigit(char character) { return digits.contains(character); }

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

struct Parts {
    std::string_view epoch;
    std::string_view version;
    std::string_view revision;
};

Parts split(std::string_view text) {
    Parts parts;
    if (const auto colon = text.find(':'); colon != std::string_view::npos) {
        parts.epoch = text.substr(0, colon);
        text.remove_prefix(colon + 1);
    }
    const auto dash = std::min(text.rfind('-'), text.size());
    parts.version = text.substr(0, dash);
    parts.revision = text.substr(std::min(dash + 1, text.size()));
    return parts;
}

// How what is not a number ranks by its first character: a tilde before the end, then letters, then the rest.
int rank(std::string_view rest) {
    constexpr int afterLetters = 256;
    if (rest.empty() || isDigit(rest.front())) {
        return 0;
    }
    const char first = rest.front();
    if (first == '~') {
        return -1;
    }
    return isLetter(first) ? first : first + afterLetters;
}

// Takes the number that a text begins with, and drops its leading zeros.
std::string_view takeNumber(std::string_view& rest) {
    const auto end = std::min(rest.find_first_not_of(digits), rest.size());
    auto number = rest.substr(0, end);
    rest.remove_prefix(end);
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

// Texts and numbers in turn.
std::weak_ordering compareParts(std::string_view a, std::string_view b) {
    while (!a.empty() || !b.empty()) {
        while (rank(a) != 0 || rank(b) != 0) {
            if (rank(a) != rank(b)) {
                return rank(a) <=> rank(b);
            }
            a.remove_prefix(1);
            b.remove_prefix(1);
        }
        const auto left = takeNumber(a);
        const auto right = takeNumber(b);
        if (left.size() != right.size()) {
            return left.size() <=> right.size();
        }
        if (left != right) {
            return left <=> right;
        }
    }
    return std::weak_ordering::equivalent;
}

} // namespace

bool isValid(std::string_view version) {
    if (version.empty() || version.size() > maximumLength || !isDigit(version.front()) ||
        version.find_first_not_of(allowed) != std::string_view::npos) {
        return false;
    }
    const auto parts = split(version);
    return parts.epoch.find_first_not_of(digits) == std::string_view::npos && !parts.version.empty() &&
           isDigit(parts.version.front());
}

std::weak_ordering compare(std::string_view a, std::string_view b) {
    const auto left = split(a);
    const auto right = split(b);
    if (const auto order = compareParts(left.epoch, right.epoch); order != 0) {
        return order;
    }
    if (const auto order = compareParts(left.version, right.version); order != 0) {
        return order;
    }
    return compareParts(left.revision, right.revision);
}

} // namespace karto::PackageVersion
