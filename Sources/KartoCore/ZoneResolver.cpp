#include "KartoCore/ZoneResolver.h"

#include "KartoCore/Config.h"
#include "KartoCore/TreeOrdering.h"

#include <cstddef>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace karto::ZoneResolver {

namespace {

// What binds a layout to a display. Views into the configuration or the list of displays.
using BindingKey = std::pair<std::string_view, Orientation>;

BindingKey keyOf(const DisplayLayout& layout) { return {layout.name, layout.orientation}; }

BindingKey keyOf(const DisplayInfo& display) { return {display.name, display.orientation()}; }

} // namespace

std::vector<ResolvedZone> resolve(const KartoConfig& config, std::span<const DisplayInfo> displays) {
    std::map<BindingKey, Rect> frames;
    for (const DisplayInfo& display : displays) {
        if (!display.name.empty()) {
            frames.try_emplace(keyOf(display), display.frame);
        }
    }
    const std::vector<RingEntry> ring = TreeOrdering::ringOrder(config.displays);
    // Every number occurs once, so there is nothing to sort.
    std::vector<const RingEntry*> byOrder(ring.size());
    for (const RingEntry& entry : ring) {
        byOrder[static_cast<std::size_t>(entry.order) - 1] = &entry;
    }
    std::vector<ResolvedZone> resolved;
    resolved.reserve(ring.size());
    for (const RingEntry* entry : byOrder) {
        const auto frame = frames.find(keyOf(entry->display));
        if (frame != frames.end()) {
            resolved.push_back({.order = entry->order,
                                .display = entry->display.name,
                                .orientation = entry->display.orientation,
                                .rect = entry->zone.rect.pixelRect(frame->second)});
        }
    }
    return resolved;
}

std::vector<DisplayCollision> collisions(const KartoConfig& config, std::span<const DisplayInfo> displays) {
    std::set<BindingKey> bound;
    for (const DisplayLayout& layout : config.displays) {
        bound.insert(keyOf(layout));
    }
    std::map<BindingKey, int> counts;
    for (const DisplayInfo& display : displays) {
        if (!display.name.empty() && bound.contains(keyOf(display))) {
            ++counts[keyOf(display)];
        }
    }
    std::vector<DisplayCollision> collisions;
    for (const auto& [key, count] : counts) {
        if (count > 1) {
            collisions.push_back({.name = std::string(key.first), .orientation = key.second, .count = count});
        }
    }
    return collisions;
}

} // namespace karto::ZoneResolver
