#pragma once
// What the program tells about itself: which configuration is in force, which shortcuts it could claim.

#include "Karto/Adapters/ConfigProviding.h"
#include "Karto/Adapters/DisplayProviding.h"
#include "Karto/Adapters/HotkeyService.h"
#include "Karto/Log.h"
#include "KartoCore/HotkeyNameMigration.h"

#include <span>
#include <string>
#include <string_view>

namespace karto {

// context: the label that begins every line, like "startup".
void logConfigStatus(std::string_view context, const ConfigProviding& config, DisplayProviding& displays,
                     std::span<const HotkeyNameMigration::Rename> renames, CheckLog& log);

void logHotkeyRegistration(std::string_view context, const HotkeyService& hotkeys,
                           const ConfigProviding& config, CheckLog& log);

// The hyper combination and every command with its key, one a line, without a final line feed.
std::string bannerText(ModifierSet modifiers, const CommandKeyMap& keys);

} // namespace karto
