#include "Karto/MenuBarIcon.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace karto::MenuBarIcon {

namespace {

// The drawing, in points: zones 14 high, the left one 6 wide, a gap of 2, the right ones 6 high.
constexpr double canvasWidth = 17;
constexpr double zoneSide = 6;
constexpr double gapWidth = 2;
constexpr double cornerRadius = 1;
constexpr double leftOpacity = 1;
constexpr double rightOpacity = 0.55;

// Of the side of the picture.
constexpr double dotDiameter = 0.3;
constexpr double dotClearance = 0.06;
constexpr RGBColor dotColor{.red = 1, .green = 59.0 / 255, .blue = 48.0 / 255};

struct Shape {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    double radius = 0;
    double opacity = 1;
};

// How far a point lies within a rounded shape: from 0 half a pixel outside its edge to 1 half a pixel inside.
double coverage(const Shape& shape, double x, double y) {
    const double halfWidth = (shape.right - shape.left) / 2;
    const double halfHeight = (shape.bottom - shape.top) / 2;
    const double across = std::abs(x - shape.left - halfWidth) - halfWidth + shape.radius;
    const double down = std::abs(y - shape.top - halfHeight) - halfHeight + shape.radius;
    const double outside = std::hypot(std::max(across, 0.0), std::max(down, 0.0)) +
                           std::min(std::max(across, down), 0.0) - shape.radius;
    return std::clamp(0.5 - outside, 0.0, 1.0);
}

std::array<Shape, 3> zonesOf(int side) {
    const double scale = side / canvasWidth;
    const double gap = std::max(1.0, std::round(gapWidth * scale));
    const double zone = std::max(1.0, std::round(zoneSide * scale));
    const double top = std::floor((side - 2 * zone - gap) / 2);
    const double bottom = top + 2 * zone + gap;
    const double radius = cornerRadius * scale;
    const Shape left{.top = top, .right = zone, .bottom = bottom, .radius = radius, .opacity = leftOpacity};
    const Shape upper{.left = zone + gap,
                      .top = top,
                      .right = double(side),
                      .bottom = top + zone,
                      .radius = radius,
                      .opacity = rightOpacity};
    Shape lower = upper;
    lower.top = top + zone + gap;
    lower.bottom = bottom;
    return {left, upper, lower};
}

Shape dotOf(int side) {
    const double diameter = std::max(4.0, std::round(dotDiameter * side));
    return {.left = side - diameter, .right = double(side), .bottom = diameter, .radius = diameter / 2};
}

Shape grown(Shape shape, double by) {
    return {.left = shape.left - by,
            .top = shape.top - by,
            .right = shape.right + by,
            .bottom = shape.bottom + by,
            .radius = shape.radius + by};
}

struct Ink {
    RGBColor color;
    double alpha = 0;
};

std::uint32_t pixel(const Ink& below, const Ink& above) {
    const double rest = below.alpha * (1 - above.alpha);
    const auto channel = [&](double RGBColor::* part) {
        return std::uint32_t(std::lround((above.color.*part * above.alpha + below.color.*part * rest) * 255));
    };
    const auto alpha = std::uint32_t(std::lround((above.alpha + rest) * 255));
    return alpha << 24U | channel(&RGBColor::red) << 16U | channel(&RGBColor::green) << 8U |
           channel(&RGBColor::blue);
}

} // namespace

Image draw(const StatusIconStyle& style) {
    const int side = style.side;
    const auto zones = zonesOf(side);
    const Shape dot = dotOf(side);
    const Shape clearing = grown(dot, std::max(1.0, dotClearance * side));
    Image image{.width = side, .height = side, .pixels = {}};
    image.pixels.reserve(std::size_t(side) * std::size_t(side));
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const double x = column + 0.5;
            const double y = row + 0.5;
            Ink symbol{.color = style.ink};
            for (const Shape& zone : zones) {
                symbol.alpha = std::max(symbol.alpha, coverage(zone, x, y) * zone.opacity);
            }
            Ink mark{.color = dotColor};
            if (style.hasUpdateMark) {
                symbol.alpha *= 1 - coverage(clearing, x, y);
                mark.alpha = coverage(dot, x, y);
            }
            image.pixels.push_back(pixel(symbol, mark));
        }
    }
    return image;
}

} // namespace karto::MenuBarIcon
