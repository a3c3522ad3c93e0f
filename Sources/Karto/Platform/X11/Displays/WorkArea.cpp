#include "Karto/Platform/X11/Displays/WorkArea.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace karto::x11 {

namespace {

constexpr std::size_t areaSize = 4;

// Of a monitor's width or height. What goes deeper is no panel but something misunderstood: the area of
// another monitor, or of a desktop that was smaller.
constexpr double mostOfAMonitor = 0.25;
// Helper windows of a pixel or two lie at the edges, too.
constexpr double thinnestPanel = 8;

bool isWithin(const Rect& inner, const Rect& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.maxX() <= outer.maxX() &&
           inner.maxY() <= outer.maxY();
}

// Cut from what the struts leave of the monitor, up to where the declared area begins. Absent where that
// takes nothing, or too much.
std::optional<Strut> cut(const Rect& monitor, Edge edge, Size desktop, std::span<const Strut> struts,
                         const Rect& declared) {
    const Strut result{.edge = edge, .depth = inset(declared, edge, desktop), .span = spanOf(monitor, edge)};
    const double taken = result.depth - inset(visibleFrame(monitor, desktop, struts), edge, desktop);
    if (taken <= 0 || taken > depthOf(monitor, edge) * mostOfAMonitor) {
        return std::nullopt;
    }
    return result;
}

// What the areas of single monitors know. True when one of them was for one of the monitors.
bool cutByMonitor(std::span<const Rect> monitors, Size desktop, std::span<const Rect> byMonitor,
                  std::vector<Strut>& struts) {
    const std::vector<Strut> known = struts;
    bool found = false;
    for (const Rect& area : byMonitor) {
        const auto monitor =
            std::ranges::find_if(monitors, [&](const Rect& frame) { return isWithin(area, frame); });
        if (monitor == monitors.end()) {
            continue;
        }
        found = true;
        std::vector<Strut> bands;
        for (const Edge edge : allEdges) {
            if (const auto band = cut(*monitor, edge, desktop, known, area)) {
                bands.push_back(*band);
            }
        }
        const auto isCutAt = [&](Edge edge) {
            return std::ranges::find(bands, edge, &Strut::edge) != bands.end();
        };
        // Else it is the monitor as it was before it got larger: the manager has not declared it anew yet.
        if (!isCutAt(Edge::right) || !isCutAt(Edge::bottom)) {
            std::ranges::copy(bands, std::back_inserter(struts));
        }
    }
    return found;
}

// What the one area for all monitors knows at that edge.
void cutOuterMonitors(std::span<const Rect> monitors, Edge edge, Size desktop, const Rect& declared,
                      std::vector<Strut>& struts) {
    const double depth = inset(declared, edge, desktop);
    const auto insetOf = [&](const Rect& monitor) { return inset(monitor, edge, desktop); };
    const bool isExplained = std::ranges::any_of(
        struts, [&](const Strut& strut) { return strut.edge == edge && strut.depth >= depth; });
    // Some managers declare no more than the monitors have in common, or one of them.
    const bool endsWithAMonitor = std::ranges::find(monitors, depth, insetOf) != monitors.end();
    if (isExplained || endsWithAMonitor) {
        return;
    }
    std::vector<Rect> concerned;
    std::ranges::copy_if(monitors, std::back_inserter(concerned),
                         [&](const Rect& monitor) { return overlapArea(monitor, declared) > 0; });
    if (concerned.empty()) {
        return;
    }
    const double outermost = insetOf(*std::ranges::min_element(concerned, {}, insetOf));
    const std::vector<Strut> known = struts;
    for (const Rect& monitor : concerned) {
        const auto band = cut(monitor, edge, desktop, known, declared);
        if (band && insetOf(monitor) == outermost) {
            struts.push_back(*band);
        }
    }
}

} // namespace

std::vector<std::optional<Rect>> areas(std::span<const std::uint32_t> words, Size desktop) {
    const Rect root{.width = desktop.width, .height = desktop.height};
    std::vector<std::optional<Rect>> result;
    for (; words.size() >= areaSize; words = words.subspan(areaSize)) {
        const auto value = [&](std::size_t index) {
            return double(std::bit_cast<std::int32_t>(words[index]));
        };
        const Rect area{.x = value(0), .y = value(1), .width = value(2), .height = value(3)};
        const bool makesSense = area.width > 0 && area.height > 0 && isWithin(area, root);
        result.push_back(makesSense ? std::optional(area) : std::nullopt);
    }
    return result;
}

std::optional<Strut> panelBand(const Rect& window, std::span<const Rect> monitors, Size desktop,
                               const Rect& declared) {
    for (const Edge edge : allEdges) {
        const double start = inset(window, edge, desktop);
        const double depth = depthOf(window, edge);
        const bool isAlongAMonitor = std::ranges::any_of(monitors, [&](const Rect& monitor) {
            return start == inset(monitor, edge, desktop) && overlapArea(window, monitor) > 0 &&
                   depth <= depthOf(monitor, edge) * mostOfAMonitor;
        });
        if (isAlongAMonitor && depth >= thinnestPanel && depth <= inset(declared, edge, desktop)) {
            return Strut{.edge = edge, .depth = start + depth, .span = spanOf(window, edge)};
        }
    }
    return std::nullopt;
}

std::vector<Rect> visibleFrames(std::span<const Rect> monitors, Size desktop, std::span<const Strut> struts,
                                std::span<const Strut> panels, const DeclaredAreas& declared) {
    std::vector<Strut> all(struts.begin(), struts.end());
    if (!cutByMonitor(monitors, desktop, declared.byMonitor, all) && declared.whole) {
        all.insert(all.end(), panels.begin(), panels.end());
        for (const Edge edge : allEdges) {
            if (std::ranges::find(panels, edge, &Strut::edge) == panels.end()) {
                cutOuterMonitors(monitors, edge, desktop, *declared.whole, all);
            }
        }
    }
    std::vector<Rect> result;
    std::ranges::transform(monitors, std::back_inserter(result),
                           [&](const Rect& monitor) { return visibleFrame(monitor, desktop, all); });
    return result;
}

} // namespace karto::x11
