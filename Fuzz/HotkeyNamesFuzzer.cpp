// Reads the key table from any bytes. Nothing may crash, and the renaming of former names is complete,
// settled after one pass, and what the list of renames says.

#include "KartoCore/HotkeyNamesAsWritten.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace karto;
using namespace karto::HotkeyNameMigration;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// The table after one rename, done by hand.
void rename(std::map<std::string, std::string>& keys, const Rename& rename) {
    const auto old = keys.extract(rename.oldName);
    require(!old.empty() && keys.contains(rename.newName) == rename.newNameAlsoPresent);
    keys.try_emplace(rename.newName, old.mapped());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto keys = readHotkeyNamesAsWritten(parseTomlDocument(std::string(data, data + size))).keys;
    const auto current = applied(keys);
    require(current.has_value() == keys.has_value());
    require(renames(current).empty() && applied(current) == current);
    const auto changes = renames(keys);
    require(changes.empty() || keys.has_value());
    if (keys) {
        for (const Rename& one : changes) {
            rename(*keys, one);
        }
    }
    require(keys == current);
    return 0;
}
