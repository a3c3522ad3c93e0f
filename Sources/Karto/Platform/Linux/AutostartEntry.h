#pragma once
// The desktop entry by which a desktop starts a program at login.

#include <string>
#include <string_view>

namespace karto {

struct AutostartEntry {
    // The program that it starts, as the entry names it; empty when it starts none.
    std::string program;
    // Somebody has switched it off without removing it.
    bool isSwitchedOff = false;

    bool operator==(const AutostartEntry&) const = default;
};

// The text of an entry that starts Karto. program: an absolute path.
std::string autostartText(std::string_view program);

AutostartEntry readAutostartEntry(std::string_view text);

} // namespace karto
