#pragma once
// What the switcher panel shows: a row for each window, or for as many as there is room for, one of them
// selected.

#include "Karto/Platform/OverlayStage.h"
#include "KartoCore/Picture.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace karto {

struct SwitcherRow {
    // The index of its window.
    int id = 0;
    // Null for an application without one.
    std::shared_ptr<const Image> icon;
    std::string appName;
    std::optional<std::string> title;

    bool operator==(const SwitcherRow&) const = default;
};

struct SwitcherPanelView {
    std::vector<SwitcherRow> rows;
    int selected = 0;
    // Whether there are more rows than these, before and after them.
    bool continuesAbove = false;
    bool continuesBelow = false;

    bool operator==(const SwitcherPanelView&) const = default;
};

// Keeps the images of rows: when the selection moves on, no row is painted again.
class SwitcherPainter {
public:
    // The size of the picture follows from the number of rows.
    Picture paint(const SwitcherPanelView& view, const StageStyle& style);

private:
    std::shared_ptr<const Image> rowImage(const SwitcherRow& row, const PixelRect& area, double scale);

    struct PaintedRow {
        SwitcherRow row;
        std::shared_ptr<const Image> image;
    };

    double scale_ = 0;
    // By the identifiers of the rows.
    std::map<int, PaintedRow> painted_;
};

} // namespace karto
