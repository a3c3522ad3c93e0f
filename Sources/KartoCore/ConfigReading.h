#pragma once
// Reads a configuration from its TOML file: whole or not at all, nothing repaired.

#include "KartoCore/Config.h"
#include "KartoCore/ReadFailure.h"
#include "KartoCore/TomlDocument.h"

#include <cstddef>
#include <expected>
#include <string_view>

namespace karto {

// Of every name and other text in the file. Names are copied with each zone of their display.
inline constexpr std::size_t maximumTextBytes = 4096;

// The first failure in reading order wins: profile, displays, hotkeys, overlay. The result has been read, not
// checked: see KartoConfig::validate().
std::expected<KartoConfig, ReadFailure> readConfig(const TomlDocument& document);

// Bytes: UTF-8 TOML.
std::expected<KartoConfig, ReadFailure> readConfig(std::string_view bytes);

} // namespace karto
