#include "KartoCore/RingNavigator.h"

#include "KartoCore/Membership.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace karto::RingNavigator {

std::optional<std::size_t> currentZoneIndex(const Rect& window, std::span<const ResolvedZone> ring) {
    constexpr double leastIou = 0.5;
    std::optional<std::size_t> best;
    double bestIou = 0;
    for (std::size_t index = 0; index < ring.size(); ++index) {
        const double overlap = iou(window, ring[index].rect);
        if (overlap >= leastIou && overlap > bestIou) {
            best = index;
            bestIou = overlap;
        }
    }
    return best;
}

std::optional<std::size_t> nearestZoneIndex(const Rect& window, std::span<const ResolvedZone> ring) {
    if (ring.empty()) {
        return std::nullopt;
    }
    const Point from = window.center();
    const auto nearest = std::ranges::min_element(ring, {}, [&](const ResolvedZone& zone) {
        const Point to = zone.rect.center();
        return std::hypot(to.x - from.x, to.y - from.y);
    });
    return static_cast<std::size_t>(std::distance(ring.begin(), nearest));
}

std::optional<Rect> destination(const Rect& window, std::span<const ResolvedZone> ring,
                                RingDirection direction) {
    if (const auto current = currentZoneIndex(window, ring)) {
        const std::size_t step = direction == RingDirection::next ? 1 : ring.size() - 1;
        return ring[(*current + step) % ring.size()].rect;
    }
    return nearestZoneIndex(window, ring).transform([&](std::size_t index) { return ring[index].rect; });
}

std::optional<Rect> snapDestination(const Rect& window, std::span<const ResolvedZone> ring) {
    return Membership::zoneIndex(window, ring).transform([&](std::size_t index) { return ring[index].rect; });
}

std::optional<Rect> destination(int order, std::span<const ResolvedZone> ring) {
    const auto found = std::ranges::find(ring, order, &ResolvedZone::order);
    if (found == ring.end()) {
        return std::nullopt;
    }
    return found->rect;
}

} // namespace karto::RingNavigator
