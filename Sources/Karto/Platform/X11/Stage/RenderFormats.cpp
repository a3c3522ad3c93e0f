#include "Karto/Platform/X11/Stage/RenderFormats.h"

#include "Karto/Platform/X11/Server/Extensions.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

namespace karto::x11 {

namespace {

bool hasExtensions(const Connection& connection) {
    constexpr std::array needed{&xcb_render_id, &xcb_shape_id, &xcb_xfixes_id};
    return std::ranges::all_of(needed, [&](xcb_extension_t* extension) {
        const auto* found = xcb_get_extension_data(connection.get(), extension);
        return found != nullptr && found->present != 0;
    });
}

bool isArgb(const xcb_render_pictforminfo_t& format) {
    const auto& channels = format.direct;
    return format.type == XCB_RENDER_PICT_TYPE_DIRECT && format.depth == translucentDepth &&
           channels.alpha_shift == 24 && channels.alpha_mask == 0xFF && channels.red_shift == 16 &&
           channels.red_mask == 0xFF && channels.green_shift == 8 && channels.green_mask == 0xFF &&
           channels.blue_shift == 0 && channels.blue_mask == 0xFF;
}

// Every kind of window of the screen.
std::vector<WindowFormat> windowFormats(const xcb_render_query_pict_formats_reply_t& reply,
                                        int screenNumber) {
    auto screens = xcb_render_query_pict_formats_screens_iterator(&reply);
    for (int i = 0; i < screenNumber && screens.rem > 1; ++i) {
        xcb_render_pictscreen_next(&screens);
    }
    std::vector<WindowFormat> result;
    for (auto depths = xcb_render_pictscreen_depths_iterator(screens.data); depths.rem > 0;
         xcb_render_pictdepth_next(&depths)) {
        for (const auto& visual :
             std::span(xcb_render_pictdepth_visuals(depths.data), depths.data->num_visuals)) {
            result.push_back({.visual = visual.visual,
                              .depth = depths.data->depth,
                              .format = visual.format,
                              .colormap = {}});
        }
    }
    return result;
}

} // namespace

std::optional<RenderFormats> readRenderFormats(Connection& connection) {
    if (!hasExtensions(connection)) {
        return std::nullopt;
    }
    // The server wants to be told the versions that this client speaks.
    const auto render = xcb_render_query_version(connection.get(), 0, 11);
    xcb_discard_reply(connection.get(), render.sequence);
    const auto reply = connection.await<xcb_render_query_pict_formats_reply_t>(
        xcb_render_query_pict_formats(connection.get()), deadlineFromNow(startBound));
    if (!reply) {
        return std::nullopt;
    }
    const std::span formats(xcb_render_query_pict_formats_formats(reply.get()), reply->num_formats);
    const auto argb = std::ranges::find_if(formats, isArgb);
    auto windows = windowFormats(*reply, connection.screenNumber());
    const auto opaque = std::ranges::find(windows, connection.screen().root_visual, &WindowFormat::visual);
    if (argb == formats.end() || opaque == windows.end()) {
        return std::nullopt;
    }
    opaque->colormap = connection.screen().default_colormap;
    RenderFormats result{.opaque = *opaque, .translucent = {}, .image = argb->id};
    const auto translucent = std::ranges::find(windows, argb->id, &WindowFormat::format);
    if (translucent != windows.end()) {
        translucent->colormap = xcb_generate_id(connection.get());
        xcb_create_colormap(connection.get(), XCB_COLORMAP_ALLOC_NONE, translucent->colormap,
                            connection.root(), translucent->visual);
        result.translucent = *translucent;
    }
    return result;
}

} // namespace karto::x11
