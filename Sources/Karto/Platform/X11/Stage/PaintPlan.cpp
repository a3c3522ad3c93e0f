#include "Karto/Platform/X11/Stage/PaintPlan.h"

#include "KartoCore/PixelArea.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <span>
#include <utility>

namespace karto::x11 {

namespace {

bool isOpaque(Pixel pixel) { return pixel >= 0x80000000; }

struct Layer {
    Paint paint;
    PixelRect area;
    // Nothing of the picture is below it.
    bool isBottom = false;
};

bool showsSomething(const PictureTile& tile) {
    if (tile.area.width <= 0 || tile.area.height <= 0 || !tile.image) {
        return false;
    }
    const auto& image = *tile.image;
    return image.width > 0 && image.height > 0 &&
           image.pixels.size() ==
               static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
}

std::vector<Layer> layersOf(const Picture& picture) {
    std::vector<Layer> layers;
    for (const auto& tile : picture.tiles) {
        if (showsSomething(tile)) {
            const bool isEven = tile.image->pixels.size() == 1;
            const bool isBottom = std::ranges::none_of(
                layers, [&](const Layer& below) { return overlap(below.area, tile.area); });
            layers.push_back({.paint = isEven ? Paint(tile.image->pixels[0]) : Paint(tile.image),
                              .area = tile.area,
                              .isBottom = isBottom});
        }
    }
    return layers;
}

// The colour at the bottom of more than half the window; transparent when there is none.
Pixel prevailingColour(std::span<const Layer> layers, int width, int height) {
    std::map<Pixel, std::int64_t> sizes;
    for (const auto& layer : layers) {
        if (const auto* colour = std::get_if<Pixel>(&layer.paint); colour != nullptr && layer.isBottom) {
            sizes[*colour] += std::int64_t{layer.area.width} * layer.area.height;
        }
    }
    const auto largest = std::ranges::max_element(sizes, {}, [](const auto& entry) { return entry.second; });
    const bool prevails = largest != sizes.end() && largest->second * 2 > std::int64_t{width} * height;
    return prevails ? largest->first : 0;
}

std::vector<PixelRect> emptyArea(std::span<const Layer> layers, int width, int height) {
    std::vector<PixelRect> empty{{.x = 0, .y = 0, .width = width, .height = height}};
    for (const auto& layer : layers) {
        if (layer.isBottom) {
            empty = without(empty, layer.area);
        }
    }
    return empty;
}

std::vector<PaintedArea> painted(std::span<const PixelRect> areas) {
    std::vector<PaintedArea> result;
    std::ranges::transform(areas, std::back_inserter(result),
                           [](const PixelRect& area) { return PaintedArea{.area = area}; });
    return result;
}

// The runs of opaque pixels in one row of an image.
std::vector<PixelRect> opaqueRuns(const Image& image, int y) {
    const auto width = static_cast<std::size_t>(image.width);
    const auto row = std::span(image.pixels).subspan(static_cast<std::size_t>(y) * width, width);
    std::vector<PixelRect> runs;
    for (auto end = row.begin(); end != row.end();) {
        const auto start = std::find_if(end, row.end(), isOpaque);
        end = std::find_if_not(start, row.end(), isOpaque);
        if (start != end) {
            runs.push_back({.x = static_cast<int>(start - row.begin()),
                            .y = y,
                            .width = static_cast<int>(end - start),
                            .height = 1});
        }
    }
    return runs;
}

std::vector<PixelRect> opaqueBoxes(const Image& image) {
    const auto continues = [](const PixelRect& above, const PixelRect& below) {
        return above.x == below.x && above.width == below.width;
    };
    std::vector<PixelRect> boxes;
    // What the last rows have in common.
    std::vector<PixelRect> open;
    for (int y = 0; y < image.height; ++y) {
        auto runs = opaqueRuns(image, y);
        if (std::ranges::equal(open, runs, continues)) {
            std::ranges::for_each(open, [](PixelRect& box) { ++box.height; });
        } else {
            boxes.insert(boxes.end(), open.begin(), open.end());
            open = std::move(runs);
        }
    }
    boxes.insert(boxes.end(), open.begin(), open.end());
    return boxes;
}

struct Span {
    int from = 0;
    int length = 0;
};

// Where a part of an image lies along one side of an area over which the image is repeated.
std::vector<Span> repeated(Span part, int period, int length) {
    if (part.length == period) {
        return {{.from = 0, .length = length}};
    }
    std::vector<Span> parts;
    for (int from = part.from; from < length; from += period) {
        parts.push_back({.from = from, .length = std::min(part.length, length - from)});
    }
    return parts;
}

} // namespace

PaintPlan planPainting(const Picture& picture, int width, int height, Background background) {
    const auto layers = layersOf(picture);
    PaintPlan plan;
    if (background == Background::prevailing) {
        plan.background = prevailingColour(layers, width, height);
    }
    if (plan.background != 0) {
        if (const auto empty = emptyArea(layers, width, height); !empty.empty()) {
            plan.steps.push_back({.paint = Pixel{0}, .blend = Blend::replace, .areas = painted(empty)});
        }
    }
    for (const auto& layer : layers) {
        if (layer.isBottom && layer.paint == Paint(plan.background)) {
            continue;
        }
        const auto blend = layer.isBottom ? Blend::replace : Blend::over;
        // Only what is at the bottom is sure not to overlap.
        const bool joins = layer.isBottom && !plan.steps.empty() && plan.steps.back().paint == layer.paint &&
                           plan.steps.back().blend == blend;
        if (joins) {
            plan.steps.back().areas.push_back({.area = layer.area});
        } else {
            plan.steps.push_back({.paint = layer.paint, .blend = blend, .areas = {{.area = layer.area}}});
        }
    }
    return plan;
}

PaintPlan cutDown(const PaintPlan& plan, std::span<const PixelRect> areas) {
    PaintPlan result{.background = plan.background,
                     .steps = {{.paint = plan.background, .blend = Blend::replace, .areas = painted(areas)}}};
    for (const auto& step : plan.steps) {
        std::vector<PaintedArea> left;
        for (const auto& [whole, imageX, imageY] : step.areas) {
            for (const auto& part : common(whole, areas)) {
                left.push_back(
                    {.area = part, .imageX = imageX + part.x - whole.x, .imageY = imageY + part.y - whole.y});
            }
        }
        if (!left.empty()) {
            result.steps.push_back({.paint = step.paint, .blend = step.blend, .areas = std::move(left)});
        }
    }
    return result;
}

std::vector<PixelRect> opaqueArea(const Picture& picture) {
    std::vector<PixelRect> result;
    for (const auto& tile : picture.tiles) {
        if (!showsSomething(tile)) {
            continue;
        }
        for (const auto& box : opaqueBoxes(*tile.image)) {
            const auto rows =
                repeated({.from = box.y, .length = box.height}, tile.image->height, tile.area.height);
            const auto columns =
                repeated({.from = box.x, .length = box.width}, tile.image->width, tile.area.width);
            for (const auto& row : rows) {
                for (const auto& column : columns) {
                    result.push_back({.x = tile.area.x + column.from,
                                      .y = tile.area.y + row.from,
                                      .width = column.length,
                                      .height = row.length});
                }
            }
        }
    }
    return result;
}

std::vector<PixelRect> opaqueTiles(const Picture& picture) {
    std::vector<PixelRect> result;
    for (const auto& tile : picture.tiles) {
        if (showsSomething(tile) && std::ranges::any_of(tile.image->pixels, isOpaque)) {
            result.push_back(tile.area);
        }
    }
    return result;
}

} // namespace karto::x11
