#include "KartoCore/HotkeyNamesAsWritten.h"

#include "KartoCore/TomlTables.h"

namespace karto {

HotkeyNamesAsWritten readHotkeyNamesAsWritten(const TomlDocument& document) {
    if (!document) {
        return {};
    }
    const toml::table* const table = (*document)->root["hotkeys"]["keys"].as_table();
    if (table == nullptr) {
        return {};
    }
    std::map<std::string, std::string> keys;
    for (const auto& entry : *table) {
        const auto keyName = entry.second.value_exact<std::string>();
        if (!keyName) {
            return {};
        }
        keys.emplace(entry.first.str(), *keyName);
    }
    return {.keys = std::move(keys)};
}

} // namespace karto
