#pragma once
// Where the switcher panel stands: centred on its zone, kept on its display. Points, one coordinate space,
// y down.

#include "KartoCore/Geometry.h"

namespace karto::SwitcherPanelLayout {

inline constexpr double rowHeight = 34;
// Above the first row and below the last one.
inline constexpr double verticalPadding = 8;
inline constexpr double width = 420;

double height(int rowCount);

// A panel that does not fit starts at the display's left or top edge.
Rect frame(int rowCount, const Rect& zone, const Rect& display);

} // namespace karto::SwitcherPanelLayout
