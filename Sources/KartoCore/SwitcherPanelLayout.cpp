#include "KartoCore/SwitcherPanelLayout.h"

#include <algorithm>

namespace karto::SwitcherPanelLayout {

namespace {

// Where a length starts that is centred on a position, without leaving the range from lower to upper.
double centred(double position, double length, double lower, double upper) {
    return std::max(lower, std::min(position - length / 2, upper - length));
}

} // namespace

double height(int rowCount) { return rowCount * rowHeight + 2 * verticalPadding; }

Rect frame(int rowCount, const Rect& zone, const Rect& display) {
    const double panelHeight = height(rowCount);
    return {.x = centred(zone.center().x, width, display.x, display.maxX()),
            .y = centred(zone.center().y, panelHeight, display.y, display.maxY()),
            .width = width,
            .height = panelHeight};
}

RowRange shownRows(int rowCount, int selected, int first, const Rect& display) {
    const int room = static_cast<int>((display.height - height(0)) / rowHeight);
    const int count = std::clamp(room, 1, rowCount);
    return {.first =
                std::clamp(first, std::max(selected - count + 1, 0), std::min(selected, rowCount - count)),
            .count = count};
}

} // namespace karto::SwitcherPanelLayout
