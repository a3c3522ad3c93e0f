#pragma once
// Names that tell every display from all others, and stay with it when cables are swapped.

#include "Karto/Platform/X11/Displays/Edid.h"

#include <span>
#include <string>
#include <vector>

namespace karto::x11 {

struct MonitorLabels {
    Edid edid;
    // Of the output that it is plugged into; no two are equal. Empty when the server does not tell.
    std::string output;
};

// One name for each monitor: what its maker calls it, or else its output. Of several that are called the same
// the one with the lowest serial keeps the plain name and the others are numbered from 2 on; those whose
// serials say nothing come last, and outputs decide between equal ones. A monitor without any name keeps
// none.
std::vector<std::string> displayNames(std::span<const MonitorLabels> monitors);

} // namespace karto::x11
