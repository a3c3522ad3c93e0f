#pragma once
// A connected display as the program sees it.

#include "KartoCore/Geometry.h"
#include "KartoCore/LayoutTree.h"

#include <span>
#include <string>
#include <vector>

namespace karto {

struct DisplayInfo {
    std::string name;
    // The visible frame (without panels), global points, y down.
    Rect frame;

    [[nodiscard]] Orientation orientation() const { return orientationOf(frame); }

    bool operator==(const DisplayInfo&) const = default;
};

std::vector<Rect> frames(std::span<const DisplayInfo> displays);

} // namespace karto
