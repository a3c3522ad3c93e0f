#include "Karto/Platform/X11/Stage/Surface.h"

#include "Karto/Platform/X11/Server/Rectangles.h"

#include <utility>
#include <variant>

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

Surface::Surface(const Connection& connection, const PixelRect& area, const WindowFormat& format)
    : connection_(connection)
    , window_(connection, area, format)
    , picture_(xcb_generate_id(connection.get())) {
    xcb_render_create_picture(connection.get(), picture_, window_.id(), format.format, 0, nullptr);
}

Surface::~Surface() { xcb_render_free_picture(connection_.get(), picture_); }

void Surface::setPlan(PaintPlan plan, Images images) {
    plan_ = std::move(plan);
    images_ = std::move(images);
    xcb_change_window_attributes(connection_.get(), window_.id(), XCB_CW_BACK_PIXEL, &plan_.background);
}

void Surface::show() {
    isClear_ = !window_.isShown();
    window_.show();
}

void Surface::paint() {
    painted_ = xcb_no_operation(connection_.get()).sequence;
    if (!isClear_) {
        // All of it: zero is as far as the window goes.
        xcb_clear_area(connection_.get(), 0, window_.id(), 0, 0, 0, 0);
    }
    isClear_ = false;
    for (const auto& step : plan_.steps) {
        paint(step);
    }
}

void Surface::paint(const PaintStep& step) const {
    const auto areas = rectangles(step.areas);
    if (const auto* even = std::get_if<Pixel>(&step.paint)) {
        xcb_render_fill_rectangles(connection_.get(), operation(step.blend), picture_, colour(*even),
                                   static_cast<std::uint32_t>(areas.size()), areas.data());
        return;
    }
    const auto image = images_.at(std::get<std::shared_ptr<const Image>>(step.paint).get())->picture();
    for (const auto& area : areas) {
        xcb_render_composite(connection_.get(), operation(step.blend), image, XCB_RENDER_PICTURE_NONE,
                             picture_, 0, 0, 0, 0, area.x, area.y, area.width, area.height);
    }
}

bool Surface::isLost(const xcb_generic_event_t& exposure) const {
    // The count wraps around.
    return static_cast<std::int32_t>(exposure.full_sequence - painted_) >= 0;
}

} // namespace karto::x11
