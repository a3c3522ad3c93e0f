#include "Karto/Drawing/QtImages.h"

#include <cmath>
#include <cstring>
#include <utility>

namespace karto::drawing {

namespace {

constexpr auto format = QImage::Format_ARGB32_Premultiplied;

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const RGBColor& color) {
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

} // namespace

QImage canvas(QSize size) {
    QImage image(size, format);
    image.fill(Qt::transparent);
    return image;
}

std::shared_ptr<const Image> shared(const QImage& canvas) {
    const auto source = canvas.convertToFormat(format);
    Image image{.width = source.width(), .height = source.height(), .pixels = {}};
    const auto width = static_cast<std::size_t>(image.width);
    image.pixels.resize(width * static_cast<std::size_t>(image.height));
    for (int y = 0; y < image.height; ++y) {
        std::memcpy(&image.pixels[static_cast<std::size_t>(y) * width], source.constScanLine(y),
                    width * sizeof(std::uint32_t));
    }
    return std::make_shared<const Image>(std::move(image));
}

QImage view(const Image& image) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
    const auto* bytes = reinterpret_cast<const uchar*>(image.pixels.data());
    return {bytes, image.width, image.height, qsizetype{4} * image.width, format};
}

QColor color(const RGBColor& color, double opacity) {
    const auto channel = [](double value) { return static_cast<float>(value); };
    return QColor::fromRgbF(channel(color.red), channel(color.green), channel(color.blue), channel(opacity));
}

QColor black(double opacity) { return color({.red = 0, .green = 0, .blue = 0}, opacity); }

QColor white(double opacity) { return color(RGBColor::white(), opacity); }

QColor contrasting(const RGBColor& color, double opacity) {
    // The luminance from which on black has the higher contrast ratio.
    constexpr double middle = 0.179;
    return luminance(color) > middle ? black(opacity) : white(opacity);
}

} // namespace karto::drawing
