#pragma once
// The bands along the edges of the desktop that panels keep for themselves, and what they leave of a monitor.
// Everything in root coordinates.

#include "Karto/Platform/X11/Displays/Edges.h"
#include "KartoCore/Geometry.h"

#include <cstdint>
#include <span>
#include <vector>

namespace karto::x11 {

struct Strut {
    Edge edge = Edge::left;
    // How far the band reaches in from that edge of the whole desktop.
    double depth = 0;
    // The part of the edge that it takes up.
    Span span;

    bool operator==(const Strut&) const = default;
};

// The struts in a window's properties: the four depths with their ranges, or else the four depths alone.
std::vector<Strut> struts(std::span<const std::uint32_t> strutPartial, std::span<const std::uint32_t> strut,
                          Size desktop);

// What the struts leave of the monitor. A strut counts where its inner edge lies inside the monitor: one that
// keeps a band of a monitor's outer neighbour covers no more of this one, and must not cover all of it. A
// monitor of which nothing is left stays whole.
Rect visibleFrame(const Rect& monitor, Size desktop, std::span<const Strut> struts);

} // namespace karto::x11
