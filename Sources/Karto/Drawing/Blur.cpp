#include "Karto/Drawing/Blur.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace karto::drawing {

namespace {

// Values row by row.
struct Grid {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<float> values;
};

// Averages every 2 * radius + 1 neighbours of a row; the result has the rows of the grid as its columns.
Grid averagedAndTransposed(const Grid& grid, std::size_t radius) {
    Grid result{.width = grid.height, .height = grid.width, .values = std::vector<float>(grid.values.size())};
    const float share = 1.0F / static_cast<float>(2 * radius + 1);
    for (std::size_t y = 0; y < grid.height; ++y) {
        const float* row = &grid.values[y * grid.width];
        float sum = 0;
        for (std::size_t x = 0; x < grid.width + radius; ++x) {
            sum += x < grid.width ? row[x] : 0;
            sum -= x > 2 * radius ? row[x - 2 * radius - 1] : 0;
            if (x >= radius) {
                result.values[(x - radius) * result.width + y] = sum * share;
            }
        }
    }
    return result;
}

Grid alphaOf(const QImage& canvas) {
    Grid grid{.width = static_cast<std::size_t>(canvas.width()),
              .height = static_cast<std::size_t>(canvas.height()),
              .values = {}};
    grid.values.reserve(grid.width * grid.height);
    const auto alpha = canvas.convertToFormat(QImage::Format_Alpha8);
    for (int y = 0; y < alpha.height(); ++y) {
        const auto* row = alpha.constScanLine(y);
        grid.values.insert(grid.values.end(), row, row + alpha.width());
    }
    return grid;
}

} // namespace

QImage blurred(const QImage& canvas, int radius, float gain) {
    auto grid = alphaOf(canvas);
    // Three averages of rows and columns each come close to a bell curve.
    for (int pass = 0; pass < 6; ++pass) {
        grid = averagedAndTransposed(grid, static_cast<std::size_t>(radius));
    }
    QImage result(canvas.size(), QImage::Format_Alpha8);
    for (int y = 0; y < result.height(); ++y) {
        const float* row = &grid.values[static_cast<std::size_t>(y) * grid.width];
        std::transform(row, row + grid.width, result.scanLine(y), [=](float value) {
            return static_cast<uchar>(std::clamp(value * gain, 0.0F, 255.0F));
        });
    }
    return result;
}

} // namespace karto::drawing
