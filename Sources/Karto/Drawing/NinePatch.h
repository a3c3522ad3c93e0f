#pragma once
// A shape of any size from one small image: corners as they are, edges and middle repeated.

#include "KartoCore/Picture.h"

#include <array>
#include <memory>

class QImage;

namespace karto::drawing {

class NinePatch {
public:
    // From a square with one row and one column between its corners.
    explicit NinePatch(const QImage& square);

    // The smallest width and height that it fills.
    [[nodiscard]] int least() const { return 2 * corner_; }

    // Clear parts take no tile.
    void fill(Picture& picture, const PixelRect& area) const;

private:
    int corner_ = 0;
    // Row by row; null where it is clear.
    std::array<std::array<std::shared_ptr<const Image>, 3>, 3> parts_;
};

} // namespace karto::drawing
