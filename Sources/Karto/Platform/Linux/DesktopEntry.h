#pragma once
// What a desktop entry file says of an application.

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace karto {

// Parts of the text of an entry, with its escapes.
using DesktopEntryKeys = std::map<std::string_view, std::string_view>;

// The keys of the main group, which comes first; others describe further actions.
DesktopEntryKeys mainGroup(std::string_view text);

struct DesktopEntry {
    std::string name;
    // A path or the name of a themed icon; empty without one.
    std::string icon;
    // The class of the application's windows; empty when it names none.
    std::string windowClass;
    // Left out of menus.
    bool isHidden = false;
    // Stands for an application that a person has removed.
    bool isDeleted = false;

    bool operator==(const DesktopEntry&) const = default;
};

// The suffixes of localized keys for a locale such as "de_AT.UTF-8@euro", the best first.
std::vector<std::string> localeSuffixes(std::string_view locale);

// Absent for a text that is no application's desktop entry.
std::optional<DesktopEntry> readDesktopEntry(std::string_view text,
                                             const std::vector<std::string>& localeSuffixes);

} // namespace karto
