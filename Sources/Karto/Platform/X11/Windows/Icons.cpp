#include "Karto/Platform/X11/Windows/Icons.h"

#include "Karto/Platform/InstalledApplications.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace karto::x11 {

namespace {

constexpr std::uint32_t preferredSize = preferredIconSize;
constexpr std::uint32_t largestSize = 1024;
// Some applications carry megabytes of icons; the small ones come first.
constexpr std::uint32_t mostWords = 128 * 1024;

std::uint32_t premultiplied(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24U;
    const auto channel = [=](unsigned shift) {
        return (((pixel >> shift & 0xFFU) * alpha + 127) / 255) << shift;
    };
    return alpha << 24U | channel(16) | channel(8) | channel(0);
}

} // namespace

std::optional<Image> bestIcon(std::span<const std::uint32_t> property) {
    std::span<const std::uint32_t> best;
    std::uint32_t bestWidth = 0;
    std::uint32_t bestHeight = 0;
    while (property.size() > 2) {
        const auto width = property[0];
        const auto height = property[1];
        const bool isSound = width > 0 && height > 0 && width <= largestSize && height <= largestSize;
        if (!isSound || property.size() - 2 < static_cast<std::size_t>(width) * height) {
            break;
        }
        const bool isBetter =
            bestWidth < preferredSize ? width > bestWidth : width >= preferredSize && width < bestWidth;
        if (isBetter) {
            bestWidth = width;
            bestHeight = height;
            best = property.subspan(2, static_cast<std::size_t>(width) * height);
        }
        property = property.subspan(2 + static_cast<std::size_t>(width) * height);
    }
    if (best.empty()) {
        return std::nullopt;
    }
    Image icon{.width = static_cast<int>(bestWidth), .height = static_cast<int>(bestHeight), .pixels = {}};
    icon.pixels.reserve(best.size());
    std::ranges::transform(best, std::back_inserter(icon.pixels), premultiplied);
    return icon;
}

std::optional<Image> readIcon(Connection& connection, xcb_window_t window) {
    const auto reply = connection.await<xcb_get_property_reply_t>(
        requestProperty(connection, window, connection.atoms().netWmIcon, XCB_ATOM_CARDINAL, mostWords),
        deadlineFromNow());
    return bestIcon(words(reply.get()));
}

} // namespace karto::x11
