#pragma once
// What the desktop's own look asks of the program's drawing.

#include "Karto/Platform/Registration.h"
#include "KartoCore/OverlayAppearance.h"

#include <functional>

namespace karto {

class DesktopTheme {
public:
    virtual ~DesktopTheme() = default;

    // Pixels to a point of text sizes, line widths and radii; 1 on a display of the usual resolution.
    [[nodiscard]] virtual double scale() const = 0;
    // What the desktop marks a selection with.
    [[nodiscard]] virtual RGBColor accent() const = 0;
    [[nodiscard]] virtual Registration observeChanges(std::function<void()> onChange) = 0;
};

} // namespace karto
