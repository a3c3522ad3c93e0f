#include "KartoCore/TomlCost.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace karto::TomlCost {

namespace {

constexpr std::string_view blanks = " \t\r";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

void skipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
}

// Whether a header or key begins with the name of the array of displays.
bool startsAtDisplays(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t["), text.size()));
    for (const std::string_view name : {"display", "\"display\"", "'display'"}) {
        if (text.starts_with(name)) {
            text.remove_prefix(name.size());
            skipBlanks(text);
            return text.starts_with('.') || text.starts_with('=') || text.starts_with(']');
        }
    }
    return false;
}

// The end of the string whose opening quote stands at `start`; a broken one ends with its line or the text.
std::size_t endOfString(std::string_view text, std::size_t start) {
    const char quote = text[start];
    const bool isBasic = quote == '"';
    const std::string_view rest = text.substr(start);
    const bool isMultiLine = rest.size() >= 3 && rest[1] == quote && rest[2] == quote;
    const std::string_view closing = rest.substr(0, isMultiLine ? 3 : 1);
    for (std::size_t i = closing.size(); i < rest.size(); ++i) {
        if (!isMultiLine && rest[i] == '\n') {
            return start + i;
        }
        if (isBasic && rest[i] == '\\') {
            ++i;
            continue;
        }
        if (!rest.substr(i).starts_with(closing)) {
            continue;
        }
        i += closing.size();
        // Up to two quotes may stand right before the closing three.
        while (isMultiLine && i < rest.size() && rest[i] == quote) {
            ++i;
        }
        return start + i;
    }
    return text.size();
}

// Walks over a text, and keeps the number of levels that are open and that of the parser's comparisons so
// far.
class Scanner {
public:
    Scanner(const Limits& limits, std::string_view text)
        : limits_(limits)
        , text_(text)
        , position_(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0) {}

    std::optional<Excess> scan() {
        while (position_ < text_.size()) {
            step();
            if (headerLevels_ + levels_ > limits_.nesting) {
                return excess(isLayoutTree() ? Excess::Kind::nestingOfLayoutTree : Excess::Kind::nesting);
            }
            if (comparisons_ > limits_.comparisons) {
                return excess(Excess::Kind::comparisons);
            }
        }
        return std::nullopt;
    }

private:
    void step() {
        const char c = text_[position_];
        const bool atStatementStart = isFresh_;
        isFresh_ = isFresh_ && blanks.contains(c);
        switch (c) {
        case '#': position_ = std::min(text_.find('\n', position_), text_.size()); return;
        case '"':
        case '\'': position_ = endOfString(text_, position_); return;
        case '\n': endLine(); break;
        case '.': endPart(); break;
        case '=': isKey_ = false; break;
        case ',': endValue(); break;
        case '[':
        case '{': open(c, atStatementStart); break;
        case ']':
        case '}': close(); break;
        default: break;
        }
        ++position_;
    }

    void endLine() {
        if (keyLevels_.size() > 1) {
            return;
        }
        endValue();
        isFresh_ = true;
        isHeader_ = false;
        statementStart_ = position_ + 1;
    }

    // Another part of a header or key follows.
    void endPart() {
        if (isHeader_) {
            ++headerLevels_;
        } else if (isKey_) {
            ++levels_;
            ++keyLevels_.back();
            comparisons_ += ++passedTables_;
        }
    }

    // Takes back what the key of the value counted.
    void endValue() {
        levels_ -= keyLevels_.back();
        keyLevels_.back() = 0;
        isKey_ = true;
    }

    void open(char bracket, bool atStatementStart) {
        if (bracket == '[' && atStatementStart) {
            isHeader_ = true;
            headerLevels_ = 1;
            headerStart_ = position_;
        } else if (!isHeader_) {
            ++levels_;
            keyLevels_.push_back(0);
            isKey_ = bracket == '{';
        }
    }

    void close() {
        if (isHeader_) {
            endHeader();
        } else if (keyLevels_.size() > 1) {
            endValue();
            --levels_;
            keyLevels_.pop_back();
        }
    }

    // Only tables beyond what this header has in common with the one before can be new.
    void endHeader() {
        const auto written = text_.substr(headerStart_ + 1, position_ - headerStart_ - 1);
        const bool isArray = written.starts_with('[');
        const auto name = written.substr(isArray ? 1 : 0);
        const auto ownPart = std::ranges::mismatch(name, headerName_).in1;
        passedTables_ += static_cast<std::uint64_t>(std::count(ownPart, name.end(), '.'));
        if (isArray && std::exchange(arrayName_, name) != name) {
            ++arrays_;
        }
        comparisons_ += passedTables_ + headerLevels_ * arrays_;
        headerName_ = name;
        isHeader_ = false;
    }

    // Other keys of a display may nest as well, and are none of a tree's business.
    [[nodiscard]] bool isLayoutTree() const {
        const std::size_t start = headerLevels_ > 0 ? headerStart_ : statementStart_;
        return text_.substr(statementStart_, 64).contains("split") &&
               startsAtDisplays(text_.substr(start, 64));
    }

    [[nodiscard]] Excess excess(Excess::Kind kind) const {
        const auto line = std::ranges::count(text_.substr(0, position_), '\n') + 1;
        return {.kind = kind, .line = static_cast<std::size_t>(line)};
    }

    Limits limits_;
    std::string_view text_;
    std::size_t position_;
    // Start of the top-level key that is open, and of the header that it stands under.
    std::size_t statementStart_ = 0;
    std::size_t headerStart_ = 0;
    // No key or header has begun on this line.
    bool isFresh_ = true;
    // Within a header, or where a key may stand.
    bool isHeader_ = false;
    bool isKey_ = true;
    std::size_t headerLevels_ = 0;
    std::size_t levels_ = 0;
    // Levels that the key at each open bracket counts, the top level first.
    std::vector<std::size_t> keyLevels_{0};

    // What the last header and the last one of an array of tables name.
    std::string_view headerName_;
    std::string_view arrayName_;
    std::uint64_t passedTables_ = 0;
    std::uint64_t arrays_ = 0;
    std::uint64_t comparisons_ = 0;
};

} // namespace

std::optional<Excess> beyond(const Limits& limits, std::string_view text) {
    return Scanner(limits, text).scan();
}

} // namespace karto::TomlCost
