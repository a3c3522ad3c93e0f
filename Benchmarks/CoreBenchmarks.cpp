// The cost of what every command and every reload computes, against the number of zones, with the order of
// growth fitted. Five displays share the zones evenly, a third of them pinned; the fifth display stands
// upright. Expanding and shrinking work on one display alone and are measured on one.

#include "KartoCore/ConfigReading.h"
#include "KartoCore/TreeOrdering.h"
#include "KartoCore/ZoneResolver.h"
#include "KartoCore/ZoneSets.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

namespace karto {
namespace {

constexpr int displayCount = 5;

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

// One table header for every node, as the settings window writes the file.
void writeTables(const LayoutNode& node, const std::string& path, std::string& text) {
    const auto out = std::back_inserter(text);
    const Split* const split = node.split();
    if (split == nullptr) {
        fmt::format_to(out, "\n[{}]\n", path);
        if (const auto pin = node.zone()->pinnedOrder)
            fmt::format_to(out, "order = {}\n", *pin);
        return;
    }
    fmt::format_to(out, "\n[{}.split]\naxis = \"{}\"\nat = {}\n", path, rawName(split->axis), split->at);
    writeTables(split->first, path + ".split.first", text);
    writeTables(split->second, path + ".split.second", text);
}

// The keys of a node's table, its whole tree in one line, as somebody may write it by hand.
void writeInline(const LayoutNode& node, std::string& text) {
    const auto out = std::back_inserter(text);
    const Split* const split = node.split();
    if (split == nullptr) {
        if (const auto pin = node.zone()->pinnedOrder)
            fmt::format_to(out, "order = {}", *pin);
        return;
    }
    fmt::format_to(out, "split = {{ axis = \"{}\", at = {}, first = {{", rawName(split->axis), split->at);
    writeInline(split->first, text);
    text += "}, second = {";
    writeInline(split->second, text);
    text += "} }";
}

enum class TextForm : std::uint8_t { tables, oneLine };

std::string configurationText(int zones, TextForm form) {
    std::string text = "profile.name = \"Benchmark\"\n";
    for (const DisplayLayout& layout : configuration(zones, displayCount).displays) {
        fmt::format_to(std::back_inserter(text), "\n[[display]]\nname = \"{}\"\norientation = \"{}\"\n",
                       layout.name, rawName(layout.orientation));
        if (form == TextForm::tables)
            writeTables(layout.root, "display", text);
        else
            writeInline(layout.root, text);
    }
    return text;
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

void readConfiguration(benchmark::State& state, TextForm form) {
    const std::string text = configurationText(zoneCount(state), form);
    while (state.KeepRunning()) {
        const auto config = readConfig(text);
        if (!config) {
            state.SkipWithError(config.error().describe().c_str());
            return;
        }
        benchmark::DoNotOptimize(config->displays.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
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
// Much more than 1,000 zones in tables exceed the largest file that is read.
BENCHMARK_CAPTURE(readConfiguration, tables, TextForm::tables)
    ->RangeMultiplier(10)
    ->Range(10, 1'000)
    ->Complexity();
BENCHMARK_CAPTURE(readConfiguration, oneLine, TextForm::oneLine)
    ->RangeMultiplier(10)
    ->Range(10, 10'000)
    ->Complexity();
BENCHMARK(expandOneZone)->RangeMultiplier(2)->Range(4, 512)->Complexity();
BENCHMARK(shrinkWholeDisplay)->RangeMultiplier(2)->Range(4, 512)->Complexity();

} // namespace
} // namespace karto
