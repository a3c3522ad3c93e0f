#include "KartoCore/HotkeyNameMigration.h"

#include <utility>

namespace karto::HotkeyNameMigration {

const std::map<std::string_view, KartoCommand>& renamed() {
    static const std::map<std::string_view, KartoCommand> names{
        {"nextVariant", KartoCommand::expandZone},
        {"previousVariant", KartoCommand::shrinkZone},
    };
    return names;
}

KeyTable applied(KeyTable keys) {
    if (!keys) {
        return keys;
    }
    for (const Rename& rename : renames(keys)) {
        auto entry = keys->extract(rename.oldName);
        entry.key() = rename.newName;
        keys->insert(std::move(entry));
    }
    return keys;
}

std::vector<Rename> renames(const KeyTable& keys) {
    std::vector<Rename> found;
    if (!keys) {
        return found;
    }
    for (const auto& [oldName, command] : renamed()) {
        if (!keys->contains(std::string(oldName))) {
            continue;
        }
        std::string newName = command.caseName();
        const bool newNameAlsoPresent = keys->contains(newName);
        found.push_back({.oldName = std::string(oldName),
                         .newName = std::move(newName),
                         .newNameAlsoPresent = newNameAlsoPresent});
    }
    return found;
}

} // namespace karto::HotkeyNameMigration
