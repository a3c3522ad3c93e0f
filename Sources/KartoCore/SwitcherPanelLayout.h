#pragma once
// Where the switcher panel stands: centred on its zone, kept on its display. Points, one coordinate space,
// y down. A panel with more rows than its display has room for shows some of them.

#include "KartoCore/Geometry.h"

namespace karto::SwitcherPanelLayout {

inline constexpr double rowHeight = 34;
// Above the first row and below the last one.
inline constexpr double verticalPadding = 8;
inline constexpr double width = 420;

double height(int rowCount);

// A panel that does not fit starts at the display's left or top edge.
Rect frame(int rowCount, const Rect& zone, const Rect& display);

struct RowRange {
    int first = 0;
    int count = 0;

    bool operator==(const RowRange&) const = default;
};

// As many rows as the display has room for, but at least one; there is one. They begin with row `first`, or
// as near to it as it takes to have the selected row among them.
RowRange shownRows(int rowCount, int selected, int first, const Rect& display);

} // namespace karto::SwitcherPanelLayout
