#include "Karto/Platform/X11/Tray/ScreenPixels.h"

#include "Karto/Platform/X11/Server/Rectangles.h"

#include <algorithm>
#include <cstring>

namespace karto::x11 {

namespace {

constexpr RGBColor lightInk{.red = 0.95, .green = 0.95, .blue = 0.95};
constexpr RGBColor darkInk{.red = 0.18, .green = 0.18, .blue = 0.18};
// Where black and white stand out equally well.
constexpr double middleLuminance = 0.18;

// Linear, from 0 to 1; a square is close enough to the true curve.
double luminance(std::uint32_t pixel) {
    const auto channel = [pixel](unsigned shift) {
        const double part = double(pixel >> shift & 0xFFU) / 255;
        return part * part;
    };
    return 0.2126 * channel(16) + 0.7152 * channel(8) + 0.0722 * channel(0);
}

} // namespace

std::vector<std::uint32_t> readPixels(Connection& connection, xcb_window_t window, const PixelRect& area) {
    const auto place = rectangle(area);
    const auto image = connection.await<xcb_get_image_reply_t>(
        xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, place.x, place.y, place.width,
                      place.height, UINT32_MAX),
        deadlineFromNow());
    const auto count = std::size_t{place.width} * place.height;
    // Screens of 24 and 32 bits have a word a pixel.
    if (!image || image->length != count) {
        return {};
    }
    std::vector<std::uint32_t> pixels(count);
    std::memcpy(pixels.data(), xcb_get_image_data(image.get()), count * sizeof(std::uint32_t));
    for (auto& pixel : pixels) {
        pixel &= 0xFFFFFFU;
    }
    return pixels;
}

RGBColor inkOn(std::span<const std::uint32_t> pixels) {
    const auto bright =
        std::ranges::count_if(pixels, [](std::uint32_t pixel) { return luminance(pixel) > middleLuminance; });
    return 2 * bright > std::ssize(pixels) ? darkInk : lightInk;
}

} // namespace karto::x11
