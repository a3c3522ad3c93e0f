#pragma once
// Which desktop this session runs.

#include <string>
#include <vector>

namespace karto {

// Its names, the most particular first, as in "Budgie" and "GNOME"; empty for a bare window manager.
std::vector<std::string> currentDesktopNames();

} // namespace karto
