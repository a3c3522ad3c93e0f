#include "Karto/Platform/Linux/DesktopEntry.h"

namespace karto {

namespace {

using Keys = DesktopEntryKeys;

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const auto first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string unescaped(std::string_view value) {
    std::string result;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result += value[i];
            continue;
        }
        const char escaped = value[++i];
        const bool isBlank = escaped == 's' || escaped == 'n' || escaped == 't' || escaped == 'r';
        result += isBlank ? ' ' : escaped;
    }
    return result;
}

std::string_view value(const Keys& keys, std::string_view key) {
    const auto found = keys.find(key);
    return found != keys.end() ? found->second : std::string_view();
}

std::string_view localized(const Keys& keys, std::string_view key, const std::vector<std::string>& suffixes) {
    for (const auto& suffix : suffixes) {
        if (const auto found = keys.find(std::string(key) + suffix);
            found != keys.end() && !found->second.empty()) {
            return found->second;
        }
    }
    return value(keys, key);
}

} // namespace

DesktopEntryKeys mainGroup(std::string_view text) {
    Keys keys;
    bool isInGroup = false;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const auto line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with('[')) {
            if (isInGroup) {
                break;
            }
            isInGroup = line == "[Desktop Entry]";
        } else if (const auto equals = line.find('=');
                   isInGroup && equals != std::string_view::npos && !line.starts_with('#')) {
            keys.emplace(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
        }
    }
    return keys;
}

std::vector<std::string> localeSuffixes(std::string_view locale) {
    const auto at = locale.find('@');
    const std::string modifier(at == std::string_view::npos ? std::string_view() : locale.substr(at));
    const std::string place(locale.substr(0, locale.find_first_of(".@")));
    const auto language = place.substr(0, place.find('_'));
    std::vector<std::string> suffixes;
    for (const auto& candidate : {place + modifier, place, language + modifier, language}) {
        suffixes.push_back("[" + candidate + "]");
    }
    return suffixes;
}

std::optional<DesktopEntry> readDesktopEntry(std::string_view text,
                                             const std::vector<std::string>& localeSuffixes) {
    const auto keys = mainGroup(text);
    if (value(keys, "Type") != "Application" || value(keys, "Name").empty()) {
        return std::nullopt;
    }
    return DesktopEntry{.name = unescaped(localized(keys, "Name", localeSuffixes)),
                        .icon = unescaped(localized(keys, "Icon", localeSuffixes)),
                        .windowClass = unescaped(value(keys, "StartupWMClass")),
                        .isHidden = value(keys, "NoDisplay") == "true",
                        .isDeleted = value(keys, "Hidden") == "true"};
}

} // namespace karto
