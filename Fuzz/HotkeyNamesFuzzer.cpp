// Reads the key table from any bytes. Nothing may crash, and no former name outlives the renaming.

#include "KartoCore/HotkeyNamesAsWritten.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto keys = karto::readHotkeyNamesAsWritten(std::string(data, data + size)).keys;
    const auto applied = karto::HotkeyNameMigration::applied(keys);
    if (applied.has_value() != keys.has_value() || !karto::HotkeyNameMigration::renames(applied).empty()) {
        std::abort();
    }
    return 0;
}
