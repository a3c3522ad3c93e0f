#pragma once
// The section of the settings in which layouts are made: what it shows, and what its presets do.

#include "Karto/Settings/SettingsModel.h"
#include "KartoCore/LayoutPresets.h"

#include <cstdint>
#include <string>
#include <vector>

namespace karto::LayoutSettings {

enum class Content : std::uint8_t { legacyFormat, unreadableFile, editor };

Content content(const SettingsModel::Status& status);

// Gives the selected display the preset's tree; nothing without one.
void apply(const LayoutPreset& preset, SettingsModel& model);

// Gives every connected display the preset of that idea for its orientation, if there is one, and lets the
// result replace the file that could not be read.
void startOver(const LayoutPreset& preset, SettingsModel& model);

// What a person should know about the layouts, a sentence each.
std::vector<std::string> warnings(const SettingsModel& model);

} // namespace karto::LayoutSettings
