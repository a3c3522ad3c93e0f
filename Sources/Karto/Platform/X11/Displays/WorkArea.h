#pragma once
// What window managers declare of the desktop beside struts: for panels of their own, and for margins that a
// person has set, it is all there is. Everything in root coordinates.

#include "Karto/Platform/X11/Displays/Struts.h"
#include "KartoCore/Geometry.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace karto::x11 {

struct DeclaredAreas {
    // One rectangle for all monitors.
    std::optional<Rect> whole;
    // One for each monitor, in an order of the manager's own; only some managers have it.
    std::vector<Rect> byMonitor;
};

// The rectangles in a property of four words each, without those that make no sense on that desktop: empty,
// or reaching beyond it.
std::vector<std::optional<Rect>> areas(std::span<const std::uint32_t> words, Size desktop);

// The band of a window that no client owns, when it is a panel of the window manager's own: it lies along an
// edge of a monitor, and the declared area leaves at least as much free there, although maybe along another
// monitor's edge. Absent for any other window.
std::optional<Strut> panelBand(const Rect& window, std::span<const Rect> monitors, Size desktop,
                               const Rect& declared);

// What is left of each monitor. Struts say most exactly what is taken, and the manager's own panels are as
// good. What only the declared areas know is cut from the monitor that one of them belongs to, else from the
// monitors at that outer edge; as long as it is no more than a panel would take.
std::vector<Rect> visibleFrames(std::span<const Rect> monitors, Size desktop, std::span<const Strut> struts,
                                std::span<const Strut> panels, const DeclaredAreas& declared);

} // namespace karto::x11
