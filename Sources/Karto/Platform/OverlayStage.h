#pragma once
// Borderless windows above the desktop: they take no focus, belong to no application's windows and show a
// picture that lets the work below shine through.

#include "Karto/Platform/PointerEvent.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/WindowHandle.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/OverlayAppearance.h"
#include "KartoCore/Picture.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace karto {

// A window of a higher level is in front of one of a lower level.
enum class StageLevel : std::uint8_t { normal = 0, floating = 3, panel = 4 };

// How pictures for the stage are to be painted.
struct StageStyle {
    // Pixels to a point of text sizes, line widths and radii; frames of windows and zones are pixels anyway.
    double scale = 1;
    // What the desktop marks a selection with.
    RGBColor accent{.red = 0.2, .green = 0.5, .blue = 0.9};
    // False while nothing blends windows: pixels are then either there, when their alpha is at least one
    // half, or cut out of the window.
    bool isTranslucent = true;

    bool operator==(const StageStyle&) const = default;
};

// Hidden, not taking the mouse and of floating level at first. What is asked of it shows with the stage's
// next present().
class BorderlessWindow {
public:
    virtual ~BorderlessWindow() = default;

    // Global points; edges fall on the nearest pixel.
    virtual void setFrame(const Rect& frame) = 0;
    virtual void setLevel(StageLevel level) = 0;
    // While it does, the pointer reaches whatever is below.
    virtual void setIgnoresMouse(bool ignoresMouse) = 0;
    virtual void setPicture(Picture picture) = 0;

    // Does beforehand what it takes to show the window at once with the picture that it has. Nothing is seen
    // of it, and what was done is undone when the window is not shown within some seconds.
    virtual void prepare() = 0;
    // Shows the window in front of all of its level and lower ones; nothing is activated.
    virtual void orderFront() = 0;
    // Shows the window directly below another one, and keeps it there.
    virtual void orderBelow(WindowHandle window) = 0;
    // Hides the window; it can be shown again.
    virtual void orderOut() = 0;

    // What the pointer looks like in the window, and during a gesture that began there; the arrow at first.
    // Shown at once.
    virtual void setCursor(Cursor cursor) = 0;
    // Hears of the pointer while the window takes the mouse. Of movements that arrive together the last alone
    // is told. An observer may hide or destroy the window.
    [[nodiscard]] virtual Registration observePointer(std::function<void(const PointerEvent&)> onPointer) = 0;
    // Where the pointer is, in pixels from the window's top left corner; absent while the window would not
    // hear of it there.
    [[nodiscard]] virtual std::optional<Point> pointer() = 0;
};

class OverlayStage {
public:
    virtual ~OverlayStage() = default;

    [[nodiscard]] virtual std::unique_ptr<BorderlessWindow> createWindow(const Rect& frame) = 0;
    // Shows at once whatever was asked of windows since the last time.
    virtual void present() = 0;

    [[nodiscard]] virtual StageStyle style() const = 0;
    [[nodiscard]] virtual Registration observeStyleChanges(std::function<void()> onChange) = 0;
};

} // namespace karto
