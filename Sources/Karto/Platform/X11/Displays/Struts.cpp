#include "Karto/Platform/X11/Displays/Struts.h"

#include <algorithm>
#include <cstddef>

namespace karto::x11 {

namespace {

constexpr std::size_t partialSize = allEdges.size() * 3;

// How deep the struts reach in front of the monitor; as far as its own edge where none does.
double deepest(const Rect& monitor, Edge edge, Size desktop, std::span<const Strut> struts) {
    const double start = inset(monitor, edge, desktop);
    const double end = start + depthOf(monitor, edge);
    double result = start;
    for (const Strut& strut : struts) {
        if (strut.edge == edge && strut.depth < end && strut.span.meets(spanOf(monitor, edge))) {
            result = std::max(result, strut.depth);
        }
    }
    return result;
}

} // namespace

std::vector<Strut> struts(std::span<const std::uint32_t> strutPartial, std::span<const std::uint32_t> strut,
                          Size desktop) {
    const bool isPartial = strutPartial.size() >= partialSize;
    const auto depths = isPartial ? strutPartial : strut;
    std::vector<Strut> result;
    for (std::size_t i = 0; i < allEdges.size() && depths.size() >= allEdges.size(); ++i) {
        if (depths[i] == 0) {
            continue;
        }
        const Edge edge = allEdges.at(i);
        Strut entry{.edge = edge,
                    .depth = double(depths[i]),
                    .span = {.from = 0, .to = isUpright(edge) ? desktop.height : desktop.width}};
        if (isPartial) {
            // The property names the last pixel of the range.
            entry.span = {.from = double(strutPartial[allEdges.size() + 2 * i]),
                          .to = double(strutPartial[allEdges.size() + 2 * i + 1]) + 1};
        }
        result.push_back(entry);
    }
    return result;
}

Rect visibleFrame(const Rect& monitor, Size desktop, std::span<const Strut> struts) {
    const auto leftBy = [&](Edge edge) { return deepest(monitor, edge, desktop, struts); };
    const double left = leftBy(Edge::left);
    const double top = leftBy(Edge::top);
    const double width = desktop.width - leftBy(Edge::right) - left;
    const double height = desktop.height - leftBy(Edge::bottom) - top;
    if (width <= 0 || height <= 0) {
        return monitor;
    }
    return {.x = left, .y = top, .width = width, .height = height};
}

} // namespace karto::x11
