#pragma once
// Writes the configuration file: the whole text, the same bytes for equal configurations.

#include "KartoCore/Config.h"

#include <string>

namespace karto::TOMLWriter {

// The text, UTF-8 with line feeds. The configuration must be valid. The text reads back into an equal one,
// but for keys of commands that are the command's default: those are left out.
std::string write(const KartoConfig& config);

} // namespace karto::TOMLWriter
