#include "Karto/Platform/X11/Stage/ServerImages.h"

#include "Karto/Platform/X11/Stage/RenderFormats.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace karto::x11 {

namespace {

// In bands of rows, each as large as the server takes a request.
void send(const Connection& connection, xcb_pixmap_t pixmap, const Image& image) {
    const xcb_gcontext_t context = xcb_generate_id(connection.get());
    xcb_create_gc(connection.get(), context, pixmap, 0, nullptr);
    const auto width = static_cast<std::size_t>(image.width);
    const std::size_t headerWords = sizeof(xcb_put_image_request_t) / sizeof(std::uint32_t);
    const std::size_t words = xcb_get_setup(connection.get())->maximum_request_length - headerWords;
    const auto rows = std::max<std::size_t>(words / width, 1);
    const std::span pixels(image.pixels);
    for (std::size_t first = 0; first < static_cast<std::size_t>(image.height); first += rows) {
        const auto band =
            pixels.subspan(first * width, std::min(rows * width, pixels.size() - first * width));
        const auto bytes = std::as_bytes(band);
        xcb_put_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context,
                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(band.size() / width), 0,
                      static_cast<std::int16_t>(first), 0, translucentDepth,
                      static_cast<std::uint32_t>(bytes.size()),
                      // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
                      reinterpret_cast<const std::uint8_t*>(bytes.data()));
    }
    xcb_free_gc(connection.get(), context);
}

} // namespace

ServerImage::ServerImage(const Connection& connection, xcb_render_pictformat_t format,
                         std::shared_ptr<const Image> image)
    : connection_(connection)
    , image_(std::move(image))
    , picture_(xcb_generate_id(connection.get())) {
    const xcb_pixmap_t pixmap = xcb_generate_id(connection.get());
    xcb_create_pixmap(connection.get(), translucentDepth, pixmap, connection.root(),
                      static_cast<std::uint16_t>(image_->width), static_cast<std::uint16_t>(image_->height));
    send(connection, pixmap, *image_);
    constexpr std::uint32_t repeat = XCB_RENDER_REPEAT_NORMAL;
    xcb_render_create_picture(connection.get(), picture_, pixmap, format, XCB_RENDER_CP_REPEAT, &repeat);
    // The picture keeps it.
    xcb_free_pixmap(connection.get(), pixmap);
}

ServerImage::~ServerImage() { xcb_render_free_picture(connection_.get(), picture_); }

std::shared_ptr<const ServerImage> ServerImages::use(const std::shared_ptr<const Image>& image) {
    if (const auto known = known_.find(image.get()); known != known_.end()) {
        if (auto kept = known->second.lock()) {
            return kept;
        }
    }
    std::erase_if(known_, [](const auto& entry) { return entry.second.expired(); });
    auto sent = std::make_shared<const ServerImage>(connection_, format_, image);
    known_.emplace(image.get(), sent);
    return sent;
}

} // namespace karto::x11
