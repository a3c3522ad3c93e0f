#include "Karto/Platform/X11/Stage/StageWindow.h"

#include "Karto/Platform/X11/Server/Extensions.h"
#include "Karto/Platform/X11/Server/Rectangles.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace karto::x11 {

namespace {

constexpr std::string_view title = "Karto";
// Instance and class, each with the zero byte that ends it.
constexpr std::string_view className{"karto\0Karto\0", 12};

constexpr std::uint32_t shownEvents = XCB_EVENT_MASK_EXPOSURE;

void describe(const Connection& connection, xcb_window_t window) {
    const auto setText = [&](xcb_atom_t property, xcb_atom_t type, std::string_view text) {
        xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
    };
    const auto setWord = [&](xcb_atom_t property, xcb_atom_t type, std::uint32_t word) {
        xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, property, type, 32, 1, &word);
    };
    const auto& atoms = connection.atoms();
    setText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, className);
    setText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, title);
    setText(atoms.netWmName, atoms.utf8String, title);
    setText(XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, hostName());
    setWord(atoms.netWmPid, XCB_ATOM_CARDINAL, static_cast<std::uint32_t>(getpid()));
    // Of all types the one that compositors give neither a shadow nor an animation.
    setWord(atoms.netWmWindowType, XCB_ATOM_ATOM, atoms.netWmWindowTypeDnd);
    setWord(atoms.comptonShadow, XCB_ATOM_CARDINAL, 0);
    constexpr std::uint32_t keepCompositing = 2;
    setWord(atoms.netWmBypassCompositor, XCB_ATOM_CARDINAL, keepCompositing);
}

} // namespace

StageWindow::StageWindow(const Connection& connection, const PixelRect& area, const WindowFormat& format)
    : connection_(connection)
    , id_(xcb_generate_id(connection.get()))
    , area_(area) {
    // The background, the border's pixel, override-redirect, the events and the colour map.
    const std::array<std::uint32_t, 5> values{XCB_BACK_PIXMAP_NONE, 0, 1, shownEvents, format.colormap};
    const auto place = rectangle(area);
    xcb_create_window(connection.get(), format.depth, id_, connection.root(), place.x, place.y, place.width,
                      place.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, format.visual,
                      XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                          XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                      values.data());
    describe(connection, id_);
    xcb_shape_rectangles(connection.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                         id_, 0, 0, 0, nullptr);
}

StageWindow::StageWindow(const Connection& connection, const PixelRect& area)
    : connection_(connection)
    , id_(xcb_generate_id(connection.get()))
    , area_(area) {
    const std::array<std::uint32_t, 2> values{
        1, XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION |
               XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    const auto place = rectangle(area);
    xcb_create_window(connection.get(), 0, id_, connection.root(), place.x, place.y, place.width,
                      place.height, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    describe(connection, id_);
}

StageWindow::~StageWindow() { xcb_destroy_window(connection_.get(), id_); }

void StageWindow::place(const PixelRect& area) {
    area_ = area;
    const std::array values{static_cast<std::uint32_t>(area.x), static_cast<std::uint32_t>(area.y),
                            static_cast<std::uint32_t>(area.width), static_cast<std::uint32_t>(area.height)};
    xcb_configure_window(connection_.get(), id_,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values.data());
}

void StageWindow::cutDownTo(std::span<const PixelRect> areas) const {
    const auto all = rectangles(areas);
    const std::span left(all);
    constexpr std::size_t most = 8192;
    std::size_t sent = 0;
    do {
        const auto part = left.subspan(sent, std::min(most, left.size() - sent));
        xcb_shape_rectangles(connection_.get(), sent == 0 ? XCB_SHAPE_SO_SET : XCB_SHAPE_SO_UNION,
                             XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED, id_, 0, 0,
                             static_cast<std::uint32_t>(part.size()), part.data());
        sent += part.size();
    } while (sent < left.size());
}

void StageWindow::makeWhole() const {
    xcb_shape_mask(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, id_, 0, 0, XCB_PIXMAP_NONE);
}

void StageWindow::reshape(std::span<const PixelRect> removed, std::span<const PixelRect> added) const {
    auto* const server = connection_.get();
    const xcb_xfixes_region_t shape = xcb_generate_id(server);
    const xcb_xfixes_region_t change = xcb_generate_id(server);
    const auto take = [](std::span<const PixelRect> areas, auto request) {
        const auto all = rectangles(areas);
        request(static_cast<std::uint32_t>(all.size()), all.data());
    };
    xcb_xfixes_create_region_from_window(server, shape, id_, XCB_SHAPE_SK_BOUNDING);
    take(removed, [&](auto count, auto* areas) { xcb_xfixes_create_region(server, change, count, areas); });
    xcb_xfixes_subtract_region(server, shape, change, shape);
    take(added, [&](auto count, auto* areas) { xcb_xfixes_set_region(server, change, count, areas); });
    xcb_xfixes_union_region(server, shape, change, shape);
    // Of many pieces the server would expose all that is between them, too.
    constexpr std::uint32_t none = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(server, id_, XCB_CW_EVENT_MASK, &none);
    xcb_xfixes_set_window_shape_region(server, id_, XCB_SHAPE_SK_BOUNDING, 0, 0, shape);
    xcb_change_window_attributes(server, id_, XCB_CW_EVENT_MASK, &shownEvents);
    xcb_xfixes_destroy_region(server, shape);
    xcb_xfixes_destroy_region(server, change);
}

void StageWindow::show() {
    if (!isShown_) {
        xcb_map_window(connection_.get(), id_);
        isShown_ = true;
    }
}

void StageWindow::hide() {
    if (isShown_) {
        xcb_unmap_window(connection_.get(), id_);
        isShown_ = false;
    }
}

} // namespace karto::x11
