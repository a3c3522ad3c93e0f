// From a key press to the window exactly in its zone: several window movers side by side on one desktop,
// taking turns, so that whatever else the machine does hits all of them alike.
//
//   MoveLatency MOVES ZONE1 ZONE2 ZONE3 NAME=KEYS[@PROCESS]...
//   MoveLatency --extents
//
// A zone is X,Y,WIDTH,HEIGHT, the first two of one size, the third of another. KEYS are the three letters or
// digits that send the active window there, each held with Shift, Control, Alt and Super. The contestants
// named "minimal" and "wmctrl" are what the others are measured against. Those whose process is told are
// also measured by the processor time that a hundred moves take them. --extents prints what the window
// manager adds to a window: left, right, top, bottom.

#include "Keyboard.h"
#include "MoveLatencyWindow.h"
#include "ProcessorTime.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

namespace karto::bench {
namespace {

using Microseconds = std::chrono::duration<double, std::micro>;

constexpr auto moveBound = std::chrono::seconds(1);
constexpr int mostAttemptsAtTheStart = 20;
constexpr double middle = 0.5;

// Longer than anything that a program does after a key press.
constexpr auto aftermath = std::chrono::seconds(1);
constexpr int countedCommands = 100;
constexpr int countings = 5;

struct Contestant {
    std::string_view name;
    // By zone, from 0.
    std::array<xcb_keycode_t, 3> keys{};
    // 0 where it is not told.
    pid_t process = 0;
};

// Two zones between which the window goes back and forth; numbers from 0.
struct Series {
    std::string_view title;
    std::array<std::size_t, 2> zones{};
};

constexpr std::array serieses{
    Series{.title = "Pure moves: another place, the same size", .zones = {0, 1}},
    Series{.title = "Moves that also resize, to the other display", .zones = {1, 2}},
};

// All of the text.
int parseNumber(std::string_view text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 1)
        throw std::invalid_argument(fmt::format("\"{}\" is not a number above 0", text));
    return number;
}

Contestant parseContestant(std::string_view text, const XServer& server) {
    const auto process = text.rfind('@');
    const auto equals = text.rfind('=', process);
    const auto keys = text.substr(0, process).substr(std::min(text.size(), equals + 1));
    if (equals == std::string_view::npos || keys.size() != 3)
        throw std::invalid_argument(fmt::format("\"{}\" is not NAME=KEYS[@PROCESS] with three keys", text));
    Contestant contestant{.name = text.substr(0, equals)};
    std::ranges::transform(keys, contestant.keys.begin(),
                           [&](char key) { return server.keyCode(static_cast<xcb_keysym_t>(key)); });
    if (process != std::string_view::npos)
        contestant.process = parseNumber(text.substr(process + 1));
    return contestant;
}

class Race {
public:
    Race(const XServer& server, std::span<const Box, 3> zones, std::span<const Contestant> contestants)
        : keyboard_(server)
        , window_(server)
        , zones_(zones)
        , contestants_(contestants) {}

    // Latencies by contestant.
    [[nodiscard]] std::vector<std::vector<Microseconds>> run(const Series& series, int moves) {
        for (const Contestant& contestant : contestants_) {
            warmUp(contestant, series.zones[1]);
            warmUp(contestant, series.zones[0]);
        }
        std::vector<std::size_t> order(contestants_.size());
        std::ranges::generate(order, [next = std::size_t{0}] mutable { return next++; });
        std::vector<std::vector<Microseconds>> latencies(order.size());
        std::size_t target = 0;
        for (int round = 0; round < moves; ++round) {
            // Nobody profits from always following the same one.
            std::ranges::shuffle(order, randomness_);
            for (const std::size_t index : order) {
                target = 1 - target;
                latencies[index].push_back(measuredMove(contestants_[index], series.zones.at(target)));
            }
        }
        return latencies;
    }

    // The processor time of that many pure moves that nobody else makes.
    [[nodiscard]] Microseconds costOfMoves(const Contestant& contestant, int moves) {
        warmUp(contestant, 0);
        std::this_thread::sleep_for(aftermath);
        const auto before = processorTime(contestant.process);
        for (int move = 0; move < moves; ++move)
            std::ignore = measuredMove(contestant, static_cast<std::size_t>((move + 1) % 2));
        std::this_thread::sleep_for(aftermath);
        return processorTime(contestant.process) - before;
    }

private:
    Microseconds measuredMove(const Contestant& contestant, std::size_t zone) {
        if (const auto latency = move(contestant, zone))
            return *latency;
        const Box& frame = window_.frame();
        throw std::runtime_error(
            fmt::format("{} did not bring the window into zone {}: its frame is at {},{},{},{}",
                        contestant.name, zone + 1, frame.x, frame.y, frame.width, frame.height));
    }

    // A contestant may still be starting.
    void warmUp(const Contestant& contestant, std::size_t zone) {
        for (int attempt = 1; attempt < mostAttemptsAtTheStart; ++attempt)
            if (move(contestant, zone) || window_.fits(zones_[zone]))
                return;
        std::ignore = measuredMove(contestant, zone);
    }

    std::optional<Microseconds> move(const Contestant& contestant, std::size_t zone) {
        const xcb_keycode_t key = contestant.keys.at(zone);
        keyboard_.holdHyper();
        const auto start = keyboard_.press(key);
        const auto arrival = window_.waitUntilIn(zones_[zone], moveBound);
        keyboard_.release(key);
        window_.waitUntilQuiet();
        if (!arrival)
            return std::nullopt;
        return *arrival - start;
    }

    Keyboard keyboard_;
    TargetWindow window_;
    std::span<const Box, 3> zones_;
    std::span<const Contestant> contestants_;
    std::mt19937 randomness_; // the same order in every run
};

// The value below which this share of the values lies; sorts them.
double quantile(std::vector<Microseconds>& values, double share) {
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))].count();
}

void printTable(const Series& series, std::span<const Contestant> contestants,
                std::vector<std::vector<Microseconds>> latencies) {
    const auto medianOf = [&](std::string_view name) -> std::optional<double> {
        const auto found = std::ranges::find(contestants, name, &Contestant::name);
        if (found == contestants.end())
            return std::nullopt;
        return quantile(latencies[static_cast<std::size_t>(found - contestants.begin())], middle);
    };
    const auto minimal = medianOf("minimal");
    const auto wmctrl = medianOf("wmctrl");
    fmt::print("\n### {}\n\n", series.title);
    fmt::print("| contestant | p25 µs | median µs | p95 µs | median : minimal | wmctrl : median |\n");
    fmt::print("|---|---:|---:|---:|---:|---:|\n");
    for (std::size_t index = 0; index < contestants.size(); ++index) {
        const double median = quantile(latencies[index], middle);
        fmt::print("| {} | {:.0f} | {:.0f} | {:.0f} | {} | {} |\n", contestants[index].name,
                   quantile(latencies[index], 0.25), median, quantile(latencies[index], 0.95),
                   minimal ? fmt::format("{:.2f}", median / *minimal) : "",
                   wmctrl ? fmt::format("{:.1f}", *wmctrl / median) : "");
    }
}

void printCosts(Race& race, std::span<const Contestant> contestants) {
    fmt::print("\n### Processor time of {} pure moves, median of {} times\n\n", countedCommands, countings);
    fmt::print("| contestant | ms |\n|---|---:|\n");
    std::vector<std::vector<Microseconds>> costs(contestants.size());
    for (int counting = 0; counting < countings; ++counting)
        for (std::size_t index = 0; index < contestants.size(); ++index)
            if (contestants[index].process != 0)
                costs[index].push_back(race.costOfMoves(contestants[index], countedCommands));
    for (std::size_t index = 0; index < contestants.size(); ++index)
        if (!costs[index].empty())
            fmt::print("| {} | {:.1f} |\n", contestants[index].name, quantile(costs[index], middle) / 1000);
}

void run(std::span<char* const> arguments) {
    const XServer server;
    const int moves = parseNumber(arguments[0]);
    const std::array zones{Box::parse(arguments[1]), Box::parse(arguments[2]), Box::parse(arguments[3])};
    std::vector<Contestant> contestants;
    for (const std::string_view text : arguments.subspan(4))
        contestants.push_back(parseContestant(text, server));
    Race race(server, zones, contestants);
    for (const Series& series : serieses)
        printTable(series, contestants, race.run(series, moves));
    printCosts(race, contestants);
}

void printExtents() {
    const XServer server;
    const Extents extents = TargetWindow(server).extents();
    fmt::print("{} {} {} {}\n", extents.left, extents.right, extents.top, extents.bottom);
}

} // namespace
} // namespace karto::bench

int main(int argc, char** argv) {
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    const bool extentsOnly = argc == 2 && std::string_view(arguments[1]) == "--extents";
    if (!extentsOnly && argc < 6) {
        fmt::print(stderr, "usage: MoveLatency MOVES ZONE1 ZONE2 ZONE3 NAME=KEYS[@PROCESS]...\n"
                           "       MoveLatency --extents\n");
        return EXIT_FAILURE;
    }
    try {
        if (extentsOnly)
            karto::bench::printExtents();
        else
            karto::bench::run(arguments.subspan(1));
    } catch (const std::exception& failure) {
        fmt::print(stderr, "MoveLatency: {}\n", failure.what());
        return EXIT_FAILURE;
    }
}
