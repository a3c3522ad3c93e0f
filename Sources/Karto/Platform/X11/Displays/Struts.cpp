#include "Karto/Platform/X11/Displays/Struts.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace karto::x11 {

namespace {

// In the order of the properties.
constexpr std::array edges{Strut::Edge::left, Strut::Edge::right, Strut::Edge::top, Strut::Edge::bottom};
constexpr std::size_t partialSize = edges.size() * 3;

bool isUpright(Strut::Edge edge) { return edge == Strut::Edge::left || edge == Strut::Edge::right; }

} // namespace

std::vector<Strut> struts(std::span<const std::uint32_t> strutPartial, std::span<const std::uint32_t> strut,
                          Size desktop) {
    const bool isPartial = strutPartial.size() >= partialSize;
    const auto depths = isPartial ? strutPartial : strut;
    std::vector<Strut> result;
    for (std::size_t i = 0; i < edges.size() && depths.size() >= edges.size(); ++i) {
        if (depths[i] == 0) {
            continue;
        }
        Strut entry{.edge = edges.at(i),
                    .depth = double(depths[i]),
                    .from = 0,
                    .to = isUpright(edges.at(i)) ? desktop.height : desktop.width};
        if (isPartial) {
            // The property names the last pixel of the range.
            entry.from = double(strutPartial[edges.size() + 2 * i]);
            entry.to = double(strutPartial[edges.size() + 2 * i + 1]) + 1;
        }
        result.push_back(entry);
    }
    return result;
}

Rect visibleFrame(const Rect& monitor, Size desktop, std::span<const Strut> struts) {
    double left = monitor.x;
    double right = monitor.maxX();
    double top = monitor.y;
    double bottom = monitor.maxY();
    for (const Strut& strut : struts) {
        const bool upright = isUpright(strut.edge);
        const double start = upright ? monitor.y : monitor.x;
        const double end = upright ? monitor.maxY() : monitor.maxX();
        if (strut.from >= end || strut.to <= start) {
            continue;
        }
        const bool far = strut.edge == Strut::Edge::right || strut.edge == Strut::Edge::bottom;
        const double line = far ? (upright ? desktop.width : desktop.height) - strut.depth : strut.depth;
        const bool inside =
            upright ? line > monitor.x && line < monitor.maxX() : line > monitor.y && line < monitor.maxY();
        if (!inside) {
            continue;
        }
        switch (strut.edge) {
        case Strut::Edge::left: left = std::max(left, line); break;
        case Strut::Edge::right: right = std::min(right, line); break;
        case Strut::Edge::top: top = std::max(top, line); break;
        case Strut::Edge::bottom: bottom = std::min(bottom, line); break;
        }
    }
    if (left >= right || top >= bottom) {
        return monitor;
    }
    return {.x = left, .y = top, .width = right - left, .height = bottom - top};
}

} // namespace karto::x11
