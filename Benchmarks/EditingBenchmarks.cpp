// The cost of editing zones: what one pointer movement of a drag computes, and the time and memory of an undo
// step.

#include "KartoCore/LayoutEditor.h"
#include "KartoCore/ZoneEditing.h"
#include "LargeConfiguration.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <cstddef>
#include <malloc.h>

namespace karto {
namespace {

constexpr int editedDisplays = 10;
constexpr Size displaySize{.width = 3840, .height = 2128};

// With everything that a configuration can hold, the names too long to be stored in place.
KartoConfig fullConfiguration(int zones) {
    KartoConfig config = configuration(zones, editedDisplays);
    for (DisplayLayout& layout : config.displays)
        layout.name = fmt::format("A display with a long name, {}", layout.name);
    LayoutEditor editor(config);
    for (const auto& [command, key] : CommandKey::defaults())
        editor.setCommandKey(key, command);
    editor.setOverlayAppearance({});
    return editor.config();
}

// Of the last display, which is looked for longest, and of its splits the deepest.
struct Target {
    DisplayLayout layout;
    EditBoundary boundary;
};

Target deepestBoundary(const KartoConfig& config) {
    Target target{.layout = config.displays.back(), .boundary = {}};
    for (const EditBoundary& each : ZoneEditing::boundaries(target.layout.root, NormRect::full())) {
        if (each.path.branches.size() > target.boundary.path.branches.size())
            target.boundary = each;
    }
    return target;
}

// Goes to and fro, so that every move changes something.
class Swing {
public:
    double next() {
        forth_ = !forth_;
        return forth_ ? 0.4 : 0.6;
    }

private:
    bool forth_ = false;
};

void moveBoundary(benchmark::State& state) {
    const KartoConfig config = fullConfiguration(static_cast<int>(state.range(0)));
    const auto& [layout, boundary] = deepestBoundary(config);
    LayoutEditor editor(config);
    Swing swing;
    while (state.KeepRunning())
        editor.moveBoundaryLive(boundary.path, layout.name, layout.orientation, swing.next());
}

// Bytes in use on the heap, with what the allocator adds to each block.
std::size_t bytesInUse() { return mallinfo2().uordblks; }

void recordStep(benchmark::State& state) {
    const KartoConfig config = fullConfiguration(static_cast<int>(state.range(0)));
    const auto& [layout, boundary] = deepestBoundary(config);
    LayoutEditor editor(config);
    Swing swing;
    const std::size_t before = bytesInUse();
    while (state.KeepRunning()) {
        editor.moveBoundaryLive(boundary.path, layout.name, layout.orientation, swing.next());
        editor.commitBoundaryDrag();
    }
    state.counters["bytes"] = static_cast<double>(bytesInUse() - before) /
                              static_cast<double>(editor.history().states().size() - 1);
}

// Side by side, so that every boundary is a candidate at a place of its own.
LayoutNode columns(int zones) {
    if (zones == 1)
        return {};
    const int first = zones / 2;
    return Split{.axis = Axis::vertical,
                 .at = static_cast<double>(first) / zones,
                 .first = columns(first),
                 .second = columns(zones - first)};
}

void snapCandidates(benchmark::State& state) {
    const LayoutNode root = columns(static_cast<int>(state.range(0)));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(Snapping::candidates({}, root, NormRect::full(), Axis::vertical));
    state.SetComplexityN(state.range(0));
}

// What is under the pointer, where the boundary snaps to, and the tree with the boundary there.
void dragBoundary(benchmark::State& state) {
    const KartoConfig config = configuration(static_cast<int>(state.range(0)), 1);
    const auto& [layout, boundary] = deepestBoundary(config);
    LayoutEditor editor(config);
    Swing swing;
    while (state.KeepRunning()) {
        const LayoutNode& root = editor.config().displays.front().root;
        const Point pointer{.x = displaySize.width * swing.next(), .y = displaySize.height / 2};
        benchmark::DoNotOptimize(ZoneEditing::boundary(pointer, root, displaySize));
        const double wanted = ZoneEditing::position(pointer, boundary, displaySize);
        const double settled = ZoneEditing::settle(wanted, boundary, root, displaySize, Snapping::Mode::on);
        editor.moveBoundaryLive(boundary.path, layout.name, layout.orientation, settled);
    }
    state.SetComplexityN(state.range(0));
}

BENCHMARK(moveBoundary)->RangeMultiplier(10)->Range(100, 10'000);
// As often as memory is sure to bear.
BENCHMARK(recordStep)->RangeMultiplier(10)->Range(100, 10'000)->Iterations(10'000);
BENCHMARK(snapCandidates)->RangeMultiplier(10)->Range(10, 10'000)->Complexity();
BENCHMARK(dragBoundary)->RangeMultiplier(10)->Range(10, 10'000)->Complexity();

} // namespace
} // namespace karto
