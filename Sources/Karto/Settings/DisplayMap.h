#pragma once
// The picture of all connected displays in the settings, in which one is selected.

#include "Karto/Settings/SettingsModel.h"
#include "KartoCore/Geometry.h"

#include <span>
#include <string>
#include <vector>

namespace karto {

struct DisplayMapBox {
    DisplayInfo display;
    // Within the picture, points from its top left corner.
    Rect frame;
    std::string text;
    // Layouts bind by name: a display without one cannot be selected.
    bool isUsable = false;
};

// The displays as large as they fit into the picture, in true proportion and in its middle. None when they
// have no extent.
std::vector<DisplayMapBox> displayMap(std::span<const DisplayInfo> displays, const Size& picture);

// Keeps the selection on a display that is connected, after the displays may have changed.
void reconcileSelection(SettingsModel& model);

// What a click on a display does.
void select(const DisplayInfo& display, SettingsModel& model);

} // namespace karto
