// The cost of what every command computes, against the number of zones, with the order of growth fitted.
// Expanding and shrinking work on one display alone and are measured on one.

#include "KartoCore/TreeOrdering.h"
#include "KartoCore/ZoneResolver.h"
#include "KartoCore/ZoneSets.h"
#include "LargeConfiguration.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

namespace karto {
namespace {

// Side by side, each with a panel at the top.
std::vector<DisplayInfo> connectedDisplays(const KartoConfig& config) {
    std::vector<DisplayInfo> displays;
    double x = 0;
    for (const DisplayLayout& layout : config.displays) {
        const bool upright = layout.orientation == Orientation::portrait;
        const Rect frame{
            .x = x, .y = 32, .width = upright ? 2160. : 3840., .height = upright ? 3808. : 2128.};
        displays.push_back({.name = layout.name, .frame = frame});
        x = frame.maxX();
    }
    return displays;
}

std::vector<ResolvedZone> resolvedRing(int zones, int displays) {
    const KartoConfig config = configuration(zones, displays);
    return ZoneResolver::resolve(config, connectedDisplays(config));
}

int zoneCount(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

void ringOrder(benchmark::State& state) {
    const KartoConfig config = configuration(zoneCount(state), displayCount);
    while (state.KeepRunning())
        benchmark::DoNotOptimize(TreeOrdering::ringOrder(config.displays));
    state.SetComplexityN(state.range(0));
}

void resolve(benchmark::State& state) {
    const KartoConfig config = configuration(zoneCount(state), displayCount);
    const auto displays = connectedDisplays(config);
    while (state.KeepRunning())
        benchmark::DoNotOptimize(ZoneResolver::resolve(config, displays));
    state.SetComplexityN(state.range(0));
}

void zonesOfWindow(benchmark::State& state) {
    const auto ring = resolvedRing(zoneCount(state), displayCount);
    const Rect window = ring[ring.size() / 2].rect;
    while (state.KeepRunning())
        benchmark::DoNotOptimize(ZoneSets::state(window, ring));
    state.SetComplexityN(state.range(0));
}

void expandOneZone(benchmark::State& state) {
    const auto ring = resolvedRing(zoneCount(state), 1);
    const ZoneSet middle{ring.size() / 2};
    while (state.KeepRunning())
        benchmark::DoNotOptimize(ZoneSets::expanded(middle, ring));
    state.SetComplexityN(state.range(0));
}

// The longest way back: from the whole display towards one zone.
void shrinkWholeDisplay(benchmark::State& state) {
    const auto ring = resolvedRing(zoneCount(state), 1);
    ZoneSet all;
    for (std::size_t index = 0; index < ring.size(); ++index)
        all.insert(all.end(), index);
    while (state.KeepRunning())
        benchmark::DoNotOptimize(ZoneSets::shrunk(all, ring.size() / 2, ring));
    state.SetComplexityN(state.range(0));
}

BENCHMARK(ringOrder)->RangeMultiplier(10)->Range(10, 10'000)->Complexity();
BENCHMARK(resolve)->RangeMultiplier(10)->Range(10, 10'000)->Complexity();
BENCHMARK(zonesOfWindow)->RangeMultiplier(10)->Range(10, 10'000)->Complexity();
BENCHMARK(expandOneZone)->RangeMultiplier(2)->Range(4, 512)->Complexity();
BENCHMARK(shrinkWholeDisplay)->RangeMultiplier(2)->Range(4, 512)->Complexity();

} // namespace
} // namespace karto
