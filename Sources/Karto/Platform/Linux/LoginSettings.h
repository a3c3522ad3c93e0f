#pragma once
// The place of a desktop's settings that lists what starts at login.

#include <string>

namespace karto {

// Opens that of the desktop that runs, else any that is installed, else the folder of the entries.
void openLoginSettings(const std::string& autostartFolder);

} // namespace karto
