#include "Karto/Platform/X11/Stage/Surface.h"

#include "Karto/Platform/X11/Server/Rectangles.h"
#include "KartoCore/PixelArea.h"

#include <cstddef>
#include <utility>
#include <variant>
#include <vector>

namespace karto::x11 {

namespace {

std::uint8_t operation(Blend blend) {
    return blend == Blend::replace ? XCB_RENDER_PICT_OP_SRC : XCB_RENDER_PICT_OP_OVER;
}

xcb_render_color_t colour(Pixel pixel) {
    const auto channel = [pixel](unsigned shift) {
        return static_cast<std::uint16_t>((pixel >> shift & 0xFF) * 0x101);
    };
    return {.red = channel(16), .green = channel(8), .blue = channel(0), .alpha = channel(24)};
}

} // namespace

Surface::Surface(const Connection& connection, const PixelRect& area, const WindowFormat& format,
                 Background background)
    : connection_(connection)
    , format_(format)
    , background_(background)
    , window_(connection, area, format)
    , picture_(xcb_generate_id(connection.get())) {
    xcb_render_create_picture(connection.get(), picture_, window_.id(), format.format, 0, nullptr);
}

Surface::~Surface() { xcb_render_free_picture(connection_.get(), picture_); }

void Surface::setPlan(PaintPlan plan, Images images) {
    if (background_ == Background::prevailing) {
        xcb_change_window_attributes(connection_.get(), window_.id(), XCB_CW_BACK_PIXEL, &plan.background);
    }
    plan_ = std::move(plan);
    images_ = std::move(images);
}

void Surface::show() {
    isClear_ = !window_.isShown();
    window_.show();
}

void Surface::paint() {
    painted_ = xcb_no_operation(connection_.get()).sequence;
    exposed_.clear();
    // What is cut down to many pieces is quicker to copy to than to paint on.
    if (std::exchange(isClear_, false) && background_ == Background::prevailing) {
        for (const auto& step : plan_.steps) {
            paint(step, picture_, {});
        }
        return;
    }
    const PixelRect whole{.width = window_.area().width, .height = window_.area().height};
    repaint(std::span(&whole, 1));
}

void Surface::repaint(std::span<const PixelRect> areas) {
    if (areas.empty()) {
        return;
    }
    auto* const server = connection_.get();
    const auto bounds = boundsOf(areas);
    const auto [x, y, width, height] = rectangle(bounds);
    const xcb_pixmap_t pixmap = xcb_generate_id(server);
    const xcb_render_picture_t canvas = xcb_generate_id(server);
    xcb_create_pixmap(server, format_.depth, pixmap, window_.id(), width, height);
    xcb_render_create_picture(server, canvas, pixmap, format_.format, 0, nullptr);
    xcb_free_pixmap(server, pixmap);
    for (const auto& step : cutDown(plan_, areas).steps) {
        paint(step, canvas, bounds);
    }
    const auto clip = rectangles(areas);
    xcb_render_set_picture_clip_rectangles(server, picture_, 0, 0, static_cast<std::uint32_t>(clip.size()),
                                           clip.data());
    xcb_render_composite(server, XCB_RENDER_PICT_OP_SRC, canvas, XCB_RENDER_PICTURE_NONE, picture_, 0, 0, 0,
                         0, x, y, width, height);
    constexpr std::uint32_t none = XCB_PIXMAP_NONE;
    xcb_render_change_picture(server, picture_, XCB_RENDER_CP_CLIP_MASK, &none);
    xcb_render_free_picture(server, canvas);
}

void Surface::paint(const PaintStep& step, xcb_render_picture_t target, const PixelRect& origin) const {
    std::vector<xcb_rectangle_t> places;
    for (auto [area, imageX, imageY] : step.areas) {
        area.x -= origin.x;
        area.y -= origin.y;
        places.push_back(rectangle(area));
    }
    if (const auto* even = std::get_if<Pixel>(&step.paint)) {
        xcb_render_fill_rectangles(connection_.get(), operation(step.blend), target, colour(*even),
                                   static_cast<std::uint32_t>(places.size()), places.data());
        return;
    }
    const auto image = images_.at(std::get<std::shared_ptr<const Image>>(step.paint).get())->picture();
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto& [x, y, width, height] = places[i];
        xcb_render_composite(connection_.get(), operation(step.blend), image, XCB_RENDER_PICTURE_NONE, target,
                             static_cast<std::int16_t>(step.areas[i].imageX),
                             static_cast<std::int16_t>(step.areas[i].imageY), 0, 0, x, y, width, height);
    }
}

void Surface::expose(const xcb_generic_event_t& event) {
    const auto& exposure = eventAs<xcb_expose_event_t>(event);
    // The count wraps around.
    const bool isLost = static_cast<std::int32_t>(event.full_sequence - painted_) >= 0;
    if (isLost) {
        exposed_.push_back(
            {.x = exposure.x, .y = exposure.y, .width = exposure.width, .height = exposure.height});
    }
    if (exposure.count == 0) {
        repaint(std::exchange(exposed_, {}));
    }
}

} // namespace karto::x11
