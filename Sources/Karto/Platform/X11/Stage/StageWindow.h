#pragma once
// A window of the stage as the server knows it: without border, hidden from window managers and the focus,
// and said to be no window that a desktop should decorate.

#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Stage/RenderFormats.h"
#include "KartoCore/Picture.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <span>

namespace karto::x11 {

class StageWindow {
public:
    // Shows what is painted on it, and at first whatever was there before; the pointer reaches whatever is
    // below.
    StageWindow(const Connection& connection, const PixelRect& area, const WindowFormat& format);
    // Shows nothing; hears of the pointer, and of being hidden.
    StageWindow(const Connection& connection, const PixelRect& area);
    StageWindow(const StageWindow&) = delete;
    StageWindow& operator=(const StageWindow&) = delete;
    StageWindow(StageWindow&&) = delete;
    StageWindow& operator=(StageWindow&&) = delete;
    ~StageWindow();

    [[nodiscard]] xcb_window_t id() const { return id_; }

    [[nodiscard]] bool isShown() const { return isShown_; }

    // Of the root.
    [[nodiscard]] const PixelRect& area() const { return area_; }

    void place(const PixelRect& area);
    // Leaves the areas of the window, in its own pixels, and nothing else.
    void cutDownTo(std::span<const PixelRect> areas) const;
    // Undoes it.
    void makeWhole() const;
    // Takes areas away and then adds some, at once. Nothing is told of what is exposed by it.
    void reshape(std::span<const PixelRect> removed, std::span<const PixelRect> added) const;

    void show();
    void hide();

private:
    const Connection& connection_;
    xcb_window_t id_;
    PixelRect area_;
    bool isShown_ = false;
};

} // namespace karto::x11
