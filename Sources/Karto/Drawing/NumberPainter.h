#pragma once
// Numbers in large figures that are legible on any background, by a halo of the opposite brightness. Each of
// the ten figures is drawn once, and numbers are put together from them, every figure on whole pixels.

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainterPath>
#include <QRect>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace karto::drawing {

struct NumberColors {
    QColor figures;
    // Of the halo where it is densest.
    QColor halo;
};

class NumberPainter {
public:
    // Not translucent: every pixel is opaque or clear, and the halo becomes a solid rim.
    NumberPainter(const QFont& font, bool isTranslucent);

    // Of the font, in pixels.
    [[nodiscard]] int size() const { return font_.pixelSize(); }

    // The same in another size of the font, in pixels.
    [[nodiscard]] NumberPainter resized(int size) const;

    // What a number takes without its halo, in pixels.
    [[nodiscard]] QSize extent(int number);

    // The figures are in the middle of the image.
    [[nodiscard]] QImage image(int number, const NumberColors& colors);

private:
    struct Figure {
        QPainterPath outline;
        // Of the outline, from where the figure begins on the base line; pixels.
        QRectF bounds;
        // Coverage, with the halo's reach around the ink; absent until it is painted.
        QImage ink;
        QImage halo;
    };

    // Where the ink of a number's figures is, from where the number begins on the base line.
    struct Layout {
        std::string digits;
        std::vector<QRect> inks;
        QRect bounds;
    };

    [[nodiscard]] Layout layout(int number);
    // From the beginning of a figure to that of the one after it, in pixels.
    double pitch(char digit, char next);
    Figure& figure(char digit);
    const Figure& painted(char digit);
    [[nodiscard]] QImage assembled(const Layout& layout, QImage Figure::* part);

    QFont font_;
    bool isTranslucent_;
    std::array<std::optional<Figure>, 10> figures_;
    std::map<std::pair<char, char>, double> pitches_;
};

} // namespace karto::drawing
