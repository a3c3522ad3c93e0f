#pragma once
// Rectangles in the coordinate spaces of the program and the measures between them.
// Rect: global points (X pixels), origin at the top left of the primary display, y down; windows, displays
// and resolved zones live there. NormRect: fractions of a display's visible frame, y down. PixelRect: whole
// pixels of a picture or of the desktop, y down. NormRect::pixelRect() and nearestPixels() convert.

#include <limits>

namespace karto {

struct Point {
    double x = 0;
    double y = 0;

    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;

    bool operator==(const Size&) const = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    // The rectangle that holds nothing, the neutral element of unionOf(); a zero-sized rectangle still has a
    // place.
    static constexpr Rect null() {
        constexpr double nowhere = std::numeric_limits<double>::infinity();
        return {.x = nowhere, .y = nowhere, .width = 0, .height = 0};
    }

    [[nodiscard]] constexpr bool isNull() const { return *this == null(); }

    [[nodiscard]] constexpr double maxX() const { return x + width; }

    [[nodiscard]] constexpr double maxY() const { return y + height; }

    [[nodiscard]] constexpr Point center() const { return {.x = x + width / 2, .y = y + height / 2}; }

    [[nodiscard]] constexpr double area() const { return width * height; }

    // The left and the top edge belong to the rectangle, the right and the bottom edge do not.
    [[nodiscard]] constexpr bool contains(Point point) const {
        return x <= point.x && point.x < maxX() && y <= point.y && point.y < maxY();
    }

    [[nodiscard]] constexpr Point origin() const { return {.x = x, .y = y}; }

    [[nodiscard]] constexpr Size size() const { return {.width = width, .height = height}; }

    bool operator==(const Rect&) const = default;
};

struct NormRect {
    double x = 0;
    double y = 0;
    double w = 0;
    double h = 0;

    static constexpr NormRect full() { return {.x = 0, .y = 0, .w = 1, .h = 1}; }

    // The rectangle on a display whose visible frame is `frame`, not rounded.
    [[nodiscard]] Rect pixelRect(const Rect& frame) const;

    bool operator==(const NormRect&) const = default;
};

// Whole pixels, from the top left corner of a picture or of the desktop.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const PixelRect&) const = default;
};

// The pixel that an edge falls on. Edges are sums of products: those of neighbours may differ in their last
// digits, and must not fall on different pixels where the true edge is in the middle of two. What lies beyond
// any desktop falls on its far end, so that differences of two pixels are whole numbers too.
int nearestPixel(double coordinate);

// Edges are rounded, not sizes: neighbours meet.
PixelRect nearestPixels(const Rect& rect);

// Area of the common part; 0 when the two only touch or lie apart.
double overlapArea(const Rect& a, const Rect& b);

// The smallest rectangle around both; a null rectangle adds nothing.
Rect unionOf(const Rect& a, const Rect& b);

// Intersection over union, in [0, 1]; 0 when the two only touch, and for two empty rectangles.
double iou(const Rect& a, const Rect& b);

} // namespace karto
