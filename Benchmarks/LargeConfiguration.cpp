#include "LargeConfiguration.h"

#include <fmt/format.h>

#include <cstdint>

namespace karto {

namespace {

// Numbers the zones as they are made and pins every third to a place of the ring far from its own.
class TreeBuilder {
public:
    explicit TreeBuilder(int ringSize)
        : ringSize_(ringSize) {}

    LayoutNode tree(int zones, Axis axis) {
        if (zones == 1)
            return zone();
        const int first = zones / 2;
        const Axis other = axis == Axis::vertical ? Axis::horizontal : Axis::vertical;
        return Split{.axis = axis,
                     .at = static_cast<double>(first) / zones,
                     .first = tree(first, other),
                     .second = tree(zones - first, other)};
    }

private:
    LayoutNode zone() {
        constexpr int stride = 7919;
        ++made_;
        return made_ % 3 == 0 ? ZoneLeaf{.pinnedOrder = std::int64_t{made_} * stride % ringSize_ + 1}
                              : ZoneLeaf{};
    }

    int ringSize_;
    int made_ = 0;
};

} // namespace

KartoConfig configuration(int zones, int displays) {
    TreeBuilder builder(zones);
    KartoConfig config{.profileName = "Benchmark", .displays = {}, .hotkeys = {}, .overlay = {}};
    for (int index = 0; index < displays; ++index)
        config.displays.push_back(
            {.name = fmt::format("Display {}", index + 1),
             .orientation = index + 1 == displayCount ? Orientation::portrait : Orientation::landscape,
             .root = builder.tree(zones / displays, Axis::vertical)});
    return config;
}

} // namespace karto
