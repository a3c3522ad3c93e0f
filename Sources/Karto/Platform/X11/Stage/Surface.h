#pragma once
// What a window of the stage shows. No pixels are kept for it: a plan says how they come about again.

#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Stage/PaintPlan.h"
#include "Karto/Platform/X11/Stage/RenderFormats.h"
#include "Karto/Platform/X11/Stage/ServerImages.h"
#include "Karto/Platform/X11/Stage/StageWindow.h"
#include "KartoCore/Picture.h"

#include <xcb/render.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

namespace karto::x11 {

class Surface {
public:
    using Images = std::map<const Image*, std::shared_ptr<const ServerImage>>;

    // background: of the plans to come.
    Surface(const Connection& connection, const PixelRect& area, const WindowFormat& format,
            Background background);
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    Surface(Surface&&) = delete;
    Surface& operator=(Surface&&) = delete;
    ~Surface();

    [[nodiscard]] StageWindow& window() { return window_; }

    [[nodiscard]] xcb_window_t id() const { return window_.id(); }

    // `images` has every image of the plan. What was painted by another plan stays until it is painted anew,
    // and all of it until the window is hidden.
    void setPlan(PaintPlan plan, Images images);

    void show();
    void paint();
    // Paints areas of the window, which do not overlap. Nobody sees them half painted.
    void repaint(std::span<const PixelRect> areas);

    // Paints what an exposure took away; it is one of this window.
    void expose(const xcb_generic_event_t& event);

private:
    // origin: the pixel of the window that is at the top left of the target.
    void paint(const PaintStep& step, xcb_render_picture_t target, const PixelRect& origin) const;

    const Connection& connection_;
    WindowFormat format_;
    Background background_;
    StageWindow window_;
    xcb_render_picture_t picture_;
    PaintPlan plan_;
    Images images_;
    // The server has filled the window with its background, and nothing has been painted on it.
    bool isClear_ = false;
    // The request that the last painting of all began with, in the server's count.
    std::uint32_t painted_ = 0;
    // What the first ones of several exposures took away.
    std::vector<PixelRect> exposed_;
};

} // namespace karto::x11
