#pragma once
// The picture of the status item: a layout of three zones, a tall one on the left and two stacked ones,
// fainter, on the right. A red dot at its top right announces an update.

#include "Karto/Platform/StatusItem.h"

namespace karto::MenuBarIcon {

// Edges between zones lie on whole pixels at every size.
Image draw(const StatusIconStyle& style);

} // namespace karto::MenuBarIcon
