#include "Support/Wallpaper.h"

namespace karto::desktop {

namespace {

std::uint32_t mixed(std::uint32_t from, std::uint32_t to, unsigned part, unsigned whole) {
    std::uint32_t color = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
        const auto a = from >> shift & 0xFF;
        const auto b = to >> shift & 0xFF;
        color |= (a * (whole - part) + b * part) / whole << shift;
    }
    return color;
}

} // namespace

Wallpaper::Wallpaper(const XClient& client, std::uint32_t top, std::uint32_t bottom)
    : client_(client)
    , window_(xcb_generate_id(client.connection())) {
    auto* const server = client.connection();
    const Reply<xcb_get_geometry_reply_t> desktop(
        xcb_get_geometry_reply(server, xcb_get_geometry(server, client.root()), nullptr));
    const xcb_pixmap_t column = xcb_generate_id(server);
    xcb_create_pixmap(server, client.screen().root_depth, column, client.root(), 8, desktop->height);
    const xcb_gcontext_t context = xcb_generate_id(server);
    xcb_create_gc(server, context, column, 0, nullptr);
    for (std::uint16_t y = 0; y < desktop->height; ++y) {
        const auto color = mixed(top, bottom, y, desktop->height);
        xcb_change_gc(server, context, XCB_GC_FOREGROUND, &color);
        const xcb_rectangle_t row{.x = 0, .y = std::int16_t(y), .width = 8, .height = 1};
        xcb_poly_fill_rectangle(server, column, context, 1, &row);
    }
    const std::array<std::uint32_t, 2> values{column, 1};
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window_, client.root(), 0, 0, desktop->width,
                      desktop->height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values.data());
    client.setProperty(window_, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                       {client.atom("_NET_WM_WINDOW_TYPE_DESKTOP")});
    const std::uint32_t below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(server, window_, XCB_CONFIG_WINDOW_STACK_MODE, &below);
    xcb_map_window(server, window_);
    xcb_free_gc(server, context);
    xcb_free_pixmap(server, column);
    client.flush();
}

Wallpaper::~Wallpaper() {
    xcb_destroy_window(client_.connection(), window_);
    client_.flush();
}

} // namespace karto::desktop
