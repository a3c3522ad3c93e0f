#pragma once
// Former names of commands in the key table of the configuration file. They are read as the current names,
// and the next save writes those.

#include "KartoCore/KartoCommand.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace karto::HotkeyNameMigration {

// Command name to key name; absent when the file has no such table.
using KeyTable = std::optional<std::map<std::string, std::string>>;

// One former name found in a file.
struct Rename {
    std::string oldName;
    std::string newName;
    // The table has an entry under the current name, too; that entry is the one that counts.
    bool newNameAlsoPresent = false;

    bool operator==(const Rename&) const = default;
};

// Former name to command.
const std::map<std::string_view, KartoCommand>& renamed();

// The table with every former name replaced by the current one. Other entries stay as they are, known or not.
KeyTable applied(KeyTable keys);

// The former names in the table, ascending.
std::vector<Rename> renames(const KeyTable& keys);

} // namespace karto::HotkeyNameMigration
