#pragma once
// Rectangles seen from an edge of the desktop, so that one rule serves all four.

#include "KartoCore/Geometry.h"

#include <array>
#include <cstdint>

namespace karto::x11 {

// In the order in which properties list them.
enum class Edge : std::uint8_t { left, right, top, bottom };

inline constexpr std::array allEdges{Edge::left, Edge::right, Edge::top, Edge::bottom};

constexpr bool isUpright(Edge edge) { return edge == Edge::left || edge == Edge::right; }

// How far the rectangle stays away from that edge of the desktop; negative where it reaches beyond.
constexpr double inset(const Rect& rect, Edge edge, Size desktop) {
    switch (edge) {
    case Edge::left: return rect.x;
    case Edge::right: return desktop.width - rect.maxX();
    case Edge::top: return rect.y;
    case Edge::bottom: return desktop.height - rect.maxY();
    }
    return 0;
}

// How much of the way from that edge to the opposite one it takes up.
constexpr double depthOf(const Rect& rect, Edge edge) { return isUpright(edge) ? rect.width : rect.height; }

// The part of the edge in front of which it lies: [from, to).
struct Span {
    double from = 0;
    double to = 0;

    [[nodiscard]] constexpr bool meets(const Span& other) const { return from < other.to && other.from < to; }

    bool operator==(const Span&) const = default;
};

constexpr Span spanOf(const Rect& rect, Edge edge) {
    return isUpright(edge) ? Span{.from = rect.y, .to = rect.maxY()}
                           : Span{.from = rect.x, .to = rect.maxX()};
}

} // namespace karto::x11
