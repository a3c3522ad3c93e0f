#include "KartoCore/TomlDocument.h"

#include "KartoCore/LayoutTree.h"
#include "KartoCore/TomlCost.h"
#include "KartoCore/TomlTables.h"
#include "KartoCore/Utf8.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <optional>

namespace karto {

namespace {

// As deep as the parser lets values nest; four times what the deepest layout tree takes.
constexpr std::size_t maximumNesting = 256;

ReadFailure corrupted(std::string description) {
    return {.kind = ReadFailure::Kind::corruptedData,
            .path = {},
            .key = {},
            .description = std::move(description)};
}

// Half a second of the parser's time. 10,000 zones as the settings write them count a tenth of it.
constexpr std::uint64_t maximumComparisons = 2'000'000'000;

// What forbids even the attempt to parse.
std::optional<ReadFailure> refusal(std::string_view bytes) {
    if (bytes.size() > maximumConfigBytes) {
        return corrupted(fmt::format("the text is longer than {} bytes, more than any configuration needs",
                                     maximumConfigBytes));
    }
    if (const auto position = firstNonText(bytes)) {
        const auto line = std::ranges::count(bytes.substr(0, *position), '\n') + 1;
        return corrupted(fmt::format("the text is not UTF-8 in line {}", line));
    }
    const auto excess =
        TomlCost::beyond({.nesting = maximumNesting, .comparisons = maximumComparisons}, bytes);
    if (!excess) {
        return std::nullopt;
    }
    switch (excess->kind) {
    case TomlCost::Excess::Kind::nestingOfLayoutTree: return nestedTooDeeply({"display"});
    case TomlCost::Excess::Kind::nesting:
        return corrupted(fmt::format("tables and arrays are nested deeper than {} levels in line {}",
                                     maximumNesting, excess->line));
    case TomlCost::Excess::Kind::comparisons: break;
    }
    return corrupted(fmt::format("the text names too many tables by line {}", excess->line));
}

ReadFailure syntaxFailure(const toml::parse_error& error) {
    std::string cause(error.description());
    if (!cause.empty()) {
        cause.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(cause.front())));
    }
    const toml::source_position place = error.source().begin;
    return corrupted(
        fmt::format("not valid TOML in line {}, column {} — {}", place.line, place.column, cause));
}

} // namespace

ReadFailure nestedTooDeeply(std::vector<std::string> path) {
    return {.kind = ReadFailure::Kind::corruptedData,
            .path = std::move(path),
            .key = {},
            .description =
                fmt::format("the layout tree is nested deeper than {} levels", LayoutNode::maximumDepth)};
}

TomlDocument parseTomlDocument(std::string_view bytes) {
    if (auto refused = refusal(bytes)) {
        return std::unexpected(*std::move(refused));
    }
    try {
        return std::make_shared<const TomlTables>(toml::parse(bytes));
    } catch (const toml::parse_error& error) {
        return std::unexpected(syntaxFailure(error));
    }
}

} // namespace karto
