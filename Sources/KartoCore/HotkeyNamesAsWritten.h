#pragma once
// A second, tolerant reading of the configuration file: its key table before former command names give way to
// current ones, so that they can be reported even when the file as a whole does not read.

#include "KartoCore/HotkeyNameMigration.h"
#include "KartoCore/TomlDocument.h"

namespace karto {

struct HotkeyNamesAsWritten {
    // Absent without a key table that holds nothing but strings, and for text that is no TOML.
    HotkeyNameMigration::KeyTable keys;
};

HotkeyNamesAsWritten readHotkeyNamesAsWritten(const TomlDocument& document);

} // namespace karto
