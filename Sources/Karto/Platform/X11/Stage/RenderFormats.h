#pragma once
// The kinds of windows and images that the server can paint on.

#include "Karto/Platform/X11/Server/Connection.h"

#include <xcb/render.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

namespace karto::x11 {

// Of pixels 0xAARRGGBB.
inline constexpr std::uint8_t translucentDepth = 32;

struct WindowFormat {
    xcb_visualid_t visual = 0;
    std::uint8_t depth = 0;
    xcb_render_pictformat_t format = 0;
    // Lives as long as the connection.
    xcb_colormap_t colormap = XCB_COLORMAP_NONE;

    bool operator==(const WindowFormat&) const = default;
};

struct RenderFormats {
    // Like the root window.
    WindowFormat opaque;
    // Pixels 0xAARRGGBB, premultiplied; absent when the server has no such windows.
    std::optional<WindowFormat> translucent;
    // Pixels 0xAARRGGBB, premultiplied.
    xcb_render_pictformat_t image = 0;

    bool operator==(const RenderFormats&) const = default;
};

// Absent when the server cannot compose images, shape windows or watch selections, or does not answer.
std::optional<RenderFormats> readRenderFormats(Connection& connection);

} // namespace karto::x11
