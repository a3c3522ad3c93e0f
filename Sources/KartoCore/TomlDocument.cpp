#include "KartoCore/TomlDocument.h"

#include "KartoCore/TomlNesting.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace karto {

namespace {

// The parser's time grows with the square of the number of tables; at this size it stays near a second at
// worst. A configuration of hundreds of zones takes less than a tenth.
constexpr std::size_t maximumSize = std::size_t{1} << 20;
// As deep as the parser lets values nest; four times what the deepest layout tree takes.
constexpr std::size_t maximumNesting = 256;

// The sequences that begin with lead bytes `lead` to `lastLead`, and what their second byte may be. Every
// further byte is a plain continuation.
struct SequenceForm {
    std::uint8_t lead;
    std::uint8_t lastLead;
    std::uint8_t length;
    std::uint8_t second;
    std::uint8_t lastSecond;
};

constexpr std::array<SequenceForm, 9> sequenceForms{{
    {.lead = 0x00, .lastLead = 0x7F, .length = 1, .second = 0x00, .lastSecond = 0x00},
    {.lead = 0xC2, .lastLead = 0xDF, .length = 2, .second = 0x80, .lastSecond = 0xBF},
    {.lead = 0xE0, .lastLead = 0xE0, .length = 3, .second = 0xA0, .lastSecond = 0xBF},
    {.lead = 0xE1, .lastLead = 0xEC, .length = 3, .second = 0x80, .lastSecond = 0xBF},
    {.lead = 0xED, .lastLead = 0xED, .length = 3, .second = 0x80, .lastSecond = 0x9F},
    {.lead = 0xEE, .lastLead = 0xEF, .length = 3, .second = 0x80, .lastSecond = 0xBF},
    {.lead = 0xF0, .lastLead = 0xF0, .length = 4, .second = 0x90, .lastSecond = 0xBF},
    {.lead = 0xF1, .lastLead = 0xF3, .length = 4, .second = 0x80, .lastSecond = 0xBF},
    {.lead = 0xF4, .lastLead = 0xF4, .length = 4, .second = 0x80, .lastSecond = 0x8F},
}};

// The length of the UTF-8 sequence at the start of the text, which is not empty; 0 when there is none.
std::size_t sequenceLength(std::string_view text) {
    const auto byteAt = [text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const auto* const form = std::ranges::find_if(sequenceForms, [&](const SequenceForm& candidate) {
        return candidate.lead <= byteAt(0) && byteAt(0) <= candidate.lastLead;
    });
    if (form == sequenceForms.end() || form->length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < form->length; ++i) {
        const std::uint8_t lowest = i == 1 ? form->second : 0x80;
        const std::uint8_t highest = i == 1 ? form->lastSecond : 0xBF;
        if (byteAt(i) < lowest || byteAt(i) > highest) {
            return 0;
        }
    }
    return form->length;
}

// The position of the first byte that is not part of UTF-8 text.
std::optional<std::size_t> firstNonText(std::string_view bytes) {
    std::size_t position = 0;
    while (position < bytes.size()) {
        const std::size_t length = sequenceLength(bytes.substr(position));
        if (length == 0) {
            return position;
        }
        position += length;
    }
    return std::nullopt;
}

ReadFailure corrupted(std::string description) {
    return {.kind = ReadFailure::Kind::corruptedData,
            .path = {},
            .key = {},
            .description = std::move(description)};
}

// What forbids even the attempt to parse.
std::optional<ReadFailure> refusal(std::string_view bytes) {
    if (bytes.size() > maximumSize) {
        return corrupted("the text is longer than 1 MiB, more than any configuration needs");
    }
    if (const auto position = firstNonText(bytes)) {
        const auto line = std::ranges::count(bytes.substr(0, *position), '\n') + 1;
        return corrupted(fmt::format("the text is not UTF-8 in line {}", line));
    }
    const auto excess = TomlNesting::beyond(maximumNesting, bytes);
    if (!excess) {
        return std::nullopt;
    }
    if (excess->isInDisplays) {
        return nestedTooDeeply({"display"});
    }
    return corrupted(fmt::format("tables and arrays are nested deeper than {} levels in line {}",
                                 maximumNesting, excess->line));
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

std::expected<toml::table, ReadFailure> parseTomlDocument(std::string_view bytes) {
    if (auto refused = refusal(bytes)) {
        return std::unexpected(*std::move(refused));
    }
    try {
        return toml::parse(bytes);
    } catch (const toml::parse_error& error) {
        return std::unexpected(syntaxFailure(error));
    }
}

} // namespace karto
