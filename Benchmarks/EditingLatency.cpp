// How closely a boundary between zones follows the pointer that drags it, and what that costs. Another
// program shows three displays of 3840x2160 side by side, each with a boundary down its middle, for editing.
//
//   EditingLatency drag PID [composited]     the boundary dragged with 1,000 movements a second
//   EditingLatency hover PID [composited]    the pointer moved over all displays, 1,000 movements a second
//   EditingLatency repeat PID [composited]   10,000 drags: what the program and the server have more
//   afterwards

#include "CompositorStandIn.h"
#include "Hand.h"
#include "XServer.h"

#include <fmt/format.h>
#include <xcb/res.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace karto::bench;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int displayWidth = 3840;
constexpr int displayHeight = 2160;
constexpr auto interval = std::chrono::milliseconds(1);
constexpr auto pause = std::chrono::milliseconds(500);
// A row of pixels far from all that follows the pointer but the boundary.
constexpr int row = 300;

// The processor time that a program has taken so far.
Milliseconds processorTime(const std::string& pid) {
    std::ifstream file("/proc/" + pid + "/schedstat");
    long long nanoseconds = 0;
    if (!(file >> nanoseconds)) {
        throw std::runtime_error("no such program: " + pid);
    }
    return std::chrono::nanoseconds(nanoseconds);
}

long residentKilobytes(const std::string& pid) {
    std::ifstream file("/proc/" + pid + "/status");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("VmRSS:")) {
            return std::stol(line.substr(6));
        }
    }
    throw std::runtime_error("no such program: " + pid);
}

// What of the desktop the server keeps for a program.
struct ServerResources {
    unsigned count = 0;
    unsigned long pixmapBytes = 0;
};

ServerResources resourcesOf(const XServer& server, xcb_window_t window) {
    auto* const connection = server.connection();
    const karto::x11::Reply<xcb_res_query_client_resources_reply_t> resources{
        xcb_res_query_client_resources_reply(connection, xcb_res_query_client_resources(connection, window),
                                             nullptr)};
    const karto::x11::Reply<xcb_res_query_client_pixmap_bytes_reply_t> bytes{
        xcb_res_query_client_pixmap_bytes_reply(
            connection, xcb_res_query_client_pixmap_bytes(connection, window), nullptr)};
    ServerResources result{.pixmapBytes = bytes->bytes};
    const std::span types(xcb_res_query_client_resources_types(resources.get()), resources->num_types);
    for (const auto& type : types) {
        result.count += type.count;
    }
    return result;
}

// The window that covers the display in the middle and shows something.
xcb_window_t overlayWindow(const XServer& server) {
    auto* const connection = server.connection();
    const karto::x11::Reply<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(connection, xcb_query_tree(connection, server.root()), nullptr)};
    const std::span children(xcb_query_tree_children(tree.get()),
                             static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    for (const auto window : children) {
        const karto::x11::Reply<xcb_get_geometry_reply_t> geometry{
            xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr)};
        if (geometry && geometry->depth > 0 && geometry->x == displayWidth &&
            geometry->width == displayWidth) {
            return window;
        }
    }
    throw std::runtime_error("there is no overlay on the display in the middle");
}

// Where the marked boundary is seen on the display in the middle.
class Eye {
public:
    // Looks at the desktop, or into the one window, where nobody paints the desktop.
    Eye(const XServer& server, std::optional<xcb_window_t> window)
        : server_(server)
        , drawable_(window.value_or(server.root()))
        , left_(window ? 0 : displayWidth) {}

    [[nodiscard]] std::optional<int> boundary() const {
        auto* const connection = server_.connection();
        const karto::x11::Reply<xcb_get_image_reply_t> image{
            xcb_get_image_reply(connection,
                                xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable_,
                                              static_cast<std::int16_t>(left_), row, displayWidth, 1, ~0U),
                                nullptr)};
        if (!image) {
            return std::nullopt;
        }
        const std::span pixels(reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get())),
                               displayWidth);
        // The accent is no grey.
        const auto isMarked = [](std::uint32_t pixel) {
            return std::abs(static_cast<int>(pixel >> 16 & 0xFF) - static_cast<int>(pixel & 0xFF)) > 40;
        };
        const auto first = std::ranges::find_if(pixels, isMarked);
        const auto last = std::find_if_not(first, pixels.end(), isMarked);
        return first == pixels.end()
                   ? std::nullopt
                   : std::optional(static_cast<int>((first - pixels.begin()) + (last - first) / 2));
    }

private:
    const XServer& server_;
    xcb_drawable_t drawable_;
    int left_;
};

struct Sight {
    Clock::time_point time;
    int boundary = 0;
};

// Moves steadily to the right, and returns how long it took until the boundary was seen as far as each
// movement had brought the pointer.
std::vector<Milliseconds> sweep(const Hand& hand, const Eye& eye, int from, int to) {
    std::vector<Clock::time_point> moved;
    std::vector<Sight> sights;
    std::atomic<bool> isOver = false;
    std::jthread looking([&] {
        while (!isOver) {
            if (const auto boundary = eye.boundary()) {
                sights.push_back({.time = Clock::now(), .boundary = *boundary});
            }
            std::this_thread::sleep_for(std::chrono::microseconds(300));
        }
    });
    auto next = Clock::now();
    for (int x = from; x < to; ++x) {
        std::this_thread::sleep_until(next);
        moved.push_back(Clock::now());
        hand.move(displayWidth + x, displayHeight / 2);
        next += interval;
    }
    std::this_thread::sleep_for(pause);
    isOver = true;
    looking.join();
    std::vector<Milliseconds> times;
    auto sight = sights.begin();
    for (std::size_t i = 0; i < moved.size(); ++i) {
        const int wanted = from + static_cast<int>(i);
        sight = std::find_if(sight, sights.end(), [&](const Sight& each) {
            return each.time >= moved[i] && each.boundary >= wanted;
        });
        if (sight == sights.end()) {
            throw std::runtime_error("the boundary did not follow the pointer");
        }
        times.emplace_back(sight->time - moved[i]);
    }
    return times;
}

void measureDrag(const XServer& server, const Eye& eye, const std::string& pid) {
    const Hand hand(server);
    const int middle = displayWidth / 2;
    hand.holdOption();
    std::vector<Milliseconds> all;
    Milliseconds busy{};
    Milliseconds atRest{};
    constexpr auto restTime = std::chrono::seconds(2);
    int boundary = middle;
    for (int round = 0; round < 5; ++round) {
        hand.move(displayWidth + boundary, displayHeight / 2);
        std::this_thread::sleep_for(pause);
        hand.press();
        const int from = middle - 1000;
        hand.move(displayWidth + from, displayHeight / 2);
        std::this_thread::sleep_for(pause);
        const auto before = processorTime(pid);
        const auto times = sweep(hand, eye, from, from + 2000);
        busy += processorTime(pid) - before;
        all.insert(all.end(), times.begin(), times.end());
        const auto beforeRest = processorTime(pid);
        std::this_thread::sleep_for(restTime);
        atRest += processorTime(pid) - beforeRest;
        hand.release();
        boundary = from + 1999;
    }
    hand.releaseOption();
    std::ranges::sort(all);
    const auto total = interval * static_cast<int>(all.size());
    fmt::print("{:.1f} ms median, {:.1f} ms p95, {:.1f} ms longest; {:.1f} % of a processor; "
               "{:.2f} ms of processor time in 10 s at rest",
               all[all.size() / 2].count(), all[all.size() * 95 / 100].count(), all.back().count(),
               100 * busy / total, atRest.count());
}

void measureHover(const XServer& server, const std::string& pid) {
    const Hand hand(server);
    constexpr int movements = 10'000;
    const auto before = processorTime(pid);
    auto next = Clock::now();
    for (int i = 0; i < movements; ++i) {
        std::this_thread::sleep_until(next);
        // Over all boundaries and many buttons.
        hand.move(i * 7 % (3 * displayWidth), 100 + i * 3 % (displayHeight - 200));
        next += interval;
    }
    const auto busy = processorTime(pid) - before;
    std::this_thread::sleep_for(pause);
    const auto beforeRest = processorTime(pid);
    std::this_thread::sleep_for(std::chrono::seconds(10));
    fmt::print("{:.1f} % of a processor; {:.2f} ms of processor time in 10 s at rest",
               100 * busy / (interval * movements), (processorTime(pid) - beforeRest).count());
}

// Every drag ends where it began, and leaves no step to undo.
void dragToAndFro(const Hand& hand, int times) {
    const int middle = displayWidth + displayWidth / 2;
    for (int i = 0; i < times; ++i) {
        hand.move(middle, displayHeight / 2);
        hand.press();
        for (const int distance : {1, 300 + i % 100, -500 + i % 70, 0}) {
            hand.move(middle + distance, displayHeight / 2 + i % 50);
            std::this_thread::sleep_for(interval);
        }
        hand.release();
    }
    std::this_thread::sleep_for(pause);
}

void measureRepetition(const XServer& server, xcb_window_t window, const std::string& pid) {
    const Hand hand(server);
    dragToAndFro(hand, 500);
    const auto memory = residentKilobytes(pid);
    const auto resources = resourcesOf(server, window);
    dragToAndFro(hand, 10'000);
    const auto after = resourcesOf(server, window);
    fmt::print("{:+} KiB of memory, {:+} resources of the server, {:+} bytes of its pixmaps",
               residentKilobytes(pid) - memory,
               static_cast<int>(after.count) - static_cast<int>(resources.count),
               static_cast<long>(after.pixmapBytes) - static_cast<long>(resources.pixmapBytes));
}

void measure(std::span<char*> arguments) {
    const std::string_view what = arguments[1];
    const std::string pid = arguments[2];
    const bool isComposited = arguments.back() == std::string_view("composited");
    const XServer server;
    // Questions must not wait for the pointer's.
    const XServer other;
    if (isComposited) {
        standInForCompositor(other);
    }
    const auto window = overlayWindow(server);
    fmt::print("| {} | {} | ", what, isComposited ? "yes" : "no");
    if (what == "drag") {
        measureDrag(server, Eye(other, isComposited ? std::optional(window) : std::nullopt), pid);
    } else if (what == "hover") {
        measureHover(server, pid);
    } else {
        measureRepetition(server, window, pid);
    }
    fmt::print(" |\n");
}

} // namespace

int main(int count, char** values) {
    const std::span arguments(values, static_cast<std::size_t>(count));
    if (arguments.size() < 3) {
        fmt::print(stderr, "EditingLatency drag|hover|repeat PID [composited]\n");
        return 2;
    }
    try {
        measure(arguments);
    } catch (const std::exception& failure) {
        fmt::print(stderr, "EditingLatency: {}\n", failure.what());
        return 1;
    }
    return 0;
}
