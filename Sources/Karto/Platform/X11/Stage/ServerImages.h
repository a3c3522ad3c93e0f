#pragma once
// The images of pictures as the server keeps them: each sent once, and kept as long as anything uses it.

#include "Karto/Platform/X11/Server/Connection.h"
#include "KartoCore/Picture.h"

#include <xcb/render.h>

#include <map>
#include <memory>

namespace karto::x11 {

// Repeats itself in both directions.
class ServerImage {
public:
    ServerImage(const Connection& connection, xcb_render_pictformat_t format,
                std::shared_ptr<const Image> image);
    ServerImage(const ServerImage&) = delete;
    ServerImage& operator=(const ServerImage&) = delete;
    ServerImage(ServerImage&&) = delete;
    ServerImage& operator=(ServerImage&&) = delete;
    ~ServerImage();

    [[nodiscard]] xcb_render_picture_t picture() const { return picture_; }

private:
    const Connection& connection_;
    // As long as it lives, no other image has its address.
    std::shared_ptr<const Image> image_;
    xcb_render_picture_t picture_;
};

class ServerImages {
public:
    ServerImages(const Connection& connection, xcb_render_pictformat_t format)
        : connection_(connection)
        , format_(format) {}

    // Sends the image unless the server has it.
    std::shared_ptr<const ServerImage> use(const std::shared_ptr<const Image>& image);

private:
    const Connection& connection_;
    xcb_render_pictformat_t format_;
    std::map<const Image*, std::weak_ptr<const ServerImage>> known_;
};

} // namespace karto::x11
