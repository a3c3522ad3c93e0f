#include "Karto/Platform/X11/Stage/PictureDamage.h"

#include "KartoCore/PixelArea.h"

#include <algorithm>
#include <span>

namespace karto::x11 {

namespace {

using Tiles = std::span<const PictureTile>;

bool isSameImage(const std::shared_ptr<const Image>& a, const std::shared_ptr<const Image>& b) {
    return a == b || (a && b && *a == *b);
}

bool isSame(const PictureTile& a, const PictureTile& b) {
    return a.area == b.area && isSameImage(a.image, b.image);
}

void add(std::vector<PixelRect>& areas, const PixelRect& area) {
    if (area.width > 0 && area.height > 0) {
        unite(areas, area);
    }
}

// Whether both show the same wherever both are.
bool continues(const PictureTile& a, const PictureTile& b) {
    const auto isInStep = [](int distance, int period) { return period > 0 && distance % period == 0; };
    return isSameImage(a.image, b.image) && a.image && isInStep(a.area.x - b.area.x, a.image->width) &&
           isInStep(a.area.y - b.area.y, a.image->height);
}

// One tile in place of another.
void addDifference(std::vector<PixelRect>& areas, const PictureTile& before, const PictureTile& after) {
    if (!continues(before, after)) {
        add(areas, before.area);
        add(areas, after.area);
        return;
    }
    for (const auto& area : without({before.area}, after.area)) {
        add(areas, area);
    }
    for (const auto& area : without({after.area}, before.area)) {
        add(areas, area);
    }
}

// Tiles of which none is in the other picture.
void addDifferences(std::vector<PixelRect>& areas, Tiles before, Tiles after) {
    const auto paired = std::min(before.size(), after.size());
    for (std::size_t i = 0; i < paired; ++i) {
        addDifference(areas, before[i], after[i]);
    }
    for (const auto unpaired : {before.subspan(paired), after.subspan(paired)}) {
        for (const auto& tile : unpaired) {
            add(areas, tile.area);
        }
    }
}

} // namespace

std::vector<PixelRect> damage(const Picture& before, const Picture& after) {
    std::vector<PixelRect> areas;
    // What follows the last tile that both have.
    Tiles old = before.tiles;
    Tiles fresh = after.tiles;
    for (std::size_t i = 0; i < fresh.size();) {
        const auto kept = std::ranges::find_if(old, [&](const auto& tile) { return isSame(tile, fresh[i]); });
        if (kept == old.end()) {
            ++i;
            continue;
        }
        const auto skipped = static_cast<std::size_t>(kept - old.begin());
        addDifferences(areas, old.first(skipped), fresh.first(i));
        old = old.subspan(skipped + 1);
        fresh = fresh.subspan(i + 1);
        i = 0;
    }
    addDifferences(areas, old, fresh);
    return areas;
}

} // namespace karto::x11
