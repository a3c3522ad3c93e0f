#include "Karto/Platform/Linux/AutostartEntry.h"

#include "Karto/Platform/Linux/DesktopEntry.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace karto {

namespace {

// What a value spells with a backslash and a letter.
constexpr std::array blanks{std::pair{'\n', 'n'}, std::pair{'\t', 't'}, std::pair{'\r', 'r'}};

std::string escaped(std::string_view value) {
    std::string result;
    for (const char character : value) {
        const auto* const blank = std::ranges::find(blanks, character, &std::pair<char, char>::first);
        if (blank != blanks.end()) {
            result.append({'\\', blank->second});
        } else {
            result.append(character == '\\' ? 2 : 1, character);
        }
    }
    // A blank at the start of a value is no part of it.
    return result.starts_with(' ') ? "\\s" + result.substr(1) : result;
}

std::string unescaped(std::string_view value) {
    std::string result;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result += value[i];
            continue;
        }
        const char letter = value[++i];
        const auto* const blank = std::ranges::find(blanks, letter, &std::pair<char, char>::second);
        if (blank != blanks.end()) {
            result += blank->first;
        } else if (letter == 's' || letter == '\\') {
            result += letter == 's' ? ' ' : '\\';
        } else {
            // Some programs escape once what should be escaped twice.
            result.append({'\\', letter});
        }
    }
    return result;
}

// One argument of a command line.
std::string quoted(std::string_view argument) {
    constexpr std::string_view special = "\"`$\\";
    std::string result = "\"";
    for (const char character : argument) {
        if (special.contains(character)) {
            result += '\\';
        }
        // A single one would stand for files to open and the like.
        result.append(character == '%' ? 2 : 1, character);
    }
    return result + '"';
}

// The first argument of a command line.
std::string firstArgument(std::string_view line) {
    std::string argument;
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char character = line[i];
        if (character == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && std::isspace(static_cast<unsigned char>(character)) != 0) {
            if (!argument.empty()) {
                break;
            }
        } else {
            const bool isEscape = character == '\\' || (character == '%' && line.substr(i).starts_with("%%"));
            i += isEscape && i + 1 < line.size() ? 1U : 0U;
            argument += line[i];
        }
    }
    return argument;
}

bool isSameIgnoringCase(std::string_view text, std::string_view lowerCase) {
    return std::ranges::equal(text, lowerCase, [](char character, char lower) {
        return std::tolower(static_cast<unsigned char>(character)) == lower;
    });
}

// Every desktop has its own name for the switch: X-GNOME-Autostart-enabled, X-MATE-Autostart-enabled, ...
bool isSwitch(std::string_view key) {
    constexpr std::string_view ending = "-autostart-enabled";
    return key.starts_with("X-") && key.size() > ending.size() &&
           isSameIgnoringCase(key.substr(key.size() - ending.size()), ending);
}

} // namespace

std::string autostartText(std::string_view program) {
    std::string text = "[Desktop Entry]\n"
                       "Type=Application\n"
                       "Name=Karto\n"
                       "Comment=Places windows into zones\n"
                       "Icon=karto\n"
                       "Terminal=false\n"
                       "StartupNotify=false\n";
    text += "TryExec=" + escaped(program) + "\n";
    text += "Exec=" + escaped(quoted(program)) + "\n";
    return text;
}

AutostartEntry readAutostartEntry(std::string_view text) {
    AutostartEntry entry;
    for (const auto& [key, value] : mainGroup(text)) {
        if (key == "Exec") {
            entry.program = firstArgument(unescaped(value));
        } else if ((key == "Hidden" && isSameIgnoringCase(value, "true")) ||
                   (isSwitch(key) && isSameIgnoringCase(value, "false"))) {
            entry.isSwitchedOff = true;
        }
    }
    return entry;
}

} // namespace karto
