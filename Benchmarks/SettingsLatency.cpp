// How long the settings window of a Karto that runs already takes to be there, and how closely it and the
// preview on the displays follow the hand. Without a compositor.
//
//   SettingsLatency open PROGRAM TIMES
//       opened by a further start of the program, and closed, so many times
//   SettingsLatency drag PROGRAM
//       the slider of the numbers' size, and the boundary down the middle of the first display
//   SettingsLatency layout PROGRAM
//       the layout section opened, and scrolled
//   SettingsLatency repeat PROGRAM TIMES
//       opened, led through all sections and closed so many times, silently
//   SettingsLatency show PROGRAM
//       opened and left open
//   SettingsLatency hide PROGRAM
//       closed

#include "Hand.h"
#include "Paintings.h"
#include "SettingsOnDesktop.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
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

constexpr auto quietTime = std::chrono::milliseconds(300);
// Between two pictures of 60 a second.
constexpr auto frameTime = std::chrono::microseconds(16'667);
constexpr int frames = 240;
constexpr int sectionCount = 4;
constexpr int displayWidth = 1920;

// The last time at which something was painted within the area, or else outside of it.
struct LastStrokes {
    std::optional<Clock::time_point> inside;
    std::optional<Clock::time_point> outside;
};

LastStrokes lastOf(std::span<const Stroke> strokes, const Box& area) {
    LastStrokes last;
    for (const auto& [time, painted] : strokes) {
        const bool isInside = painted.x >= area.x && painted.y >= area.y &&
                              painted.x + painted.width <= area.x + area.width &&
                              painted.y + painted.height <= area.y + area.height;
        (isInside ? last.inside : last.outside) = time;
    }
    return last;
}

// From the begin until that was painted, without which there is nothing to measure.
Milliseconds until(const std::optional<Clock::time_point>& painted, Clock::time_point begin) {
    if (!painted) {
        throw std::runtime_error("nothing was painted");
    }
    return *painted - begin;
}

std::string middleAndEnds(std::vector<Milliseconds> times) {
    std::ranges::sort(times);
    return fmt::format("{:.1f} | {:.1f} | {:.1f}", times[times.size() / 2].count(),
                       times[times.size() * 95 / 100].count(), times.back().count());
}

class Bench {
public:
    explicit Bench(const std::string& program)
        : settings_(server_, program) {}

    void measureOpening(int times) {
        std::vector<Milliseconds> windows;
        std::vector<Milliseconds> previews;
        for (int i = 0; i < times; ++i) {
            std::ignore = paintings_.untilQuietFor(quietTime);
            const auto begin = settings_.open();
            const auto strokes = paintings_.untilQuietFor(quietTime);
            const auto last = lastOf(strokes, settings_.area());
            windows.push_back(until(last.inside, begin));
            previews.push_back(until(last.outside, begin));
            settings_.close();
        }
        const auto print = [](std::string_view what, std::vector<Milliseconds> all) {
            const auto first = all.front();
            all.erase(all.begin());
            fmt::print("| {} opened, first {:.1f} ms, then | {} |\n", what, first.count(),
                       middleAndEnds(std::move(all)));
        };
        print("window", windows);
        print("preview", previews);
    }

    void measureDrags() {
        open();
        settings_.showNextSection();
        settings_.showNextSection();
        std::ignore = paintings_.untilQuietFor(quietTime);
        measureSlider();
        settings_.showNextSection();
        measureBoundary();
        settings_.close();
    }

    void measureLayout() {
        open();
        settings_.showNextSection();
        settings_.showNextSection();
        std::ignore = paintings_.untilQuietFor(quietTime);
        const auto begin = settings_.showNextSection();
        const auto last = lastOf(paintings_.untilQuietFor(quietTime), settings_.area());
        fmt::print("| layout section shown, {:.1f} ms | | | |\n", until(last.inside, begin).count());
        const Box area = settings_.area();
        hand_.move(area.x + area.width * 2 / 3, area.y + area.height / 2);
        follow("wheel over the layout section", false,
               [this](int frame) { hand_.scroll(frame / 40 % 2 == 0); });
        settings_.close();
    }

    void repeat(int times) {
        for (int i = 0; i < times; ++i) {
            open();
            for (int section = 1; section < sectionCount; ++section) {
                settings_.showNextSection();
                std::ignore = paintings_.untilQuietFor(frameTime);
            }
            settings_.close();
        }
    }

    // With the window painted.
    void open() {
        std::ignore = settings_.open();
        std::ignore = paintings_.untilQuietFor(quietTime);
    }

    void close() { settings_.close(); }

private:
    void measureSlider() {
        const Box groove = filledGrooves().at(2);
        constexpr int knobRadius = 8;
        constexpr int span = 170;
        constexpr int step = 5;
        const int y = groove.y + groove.height / 2;
        hand_.move(groove.x + groove.width + knobRadius, y);
        hand_.press();
        follow("slider of the numbers' size", true, [&](int frame) {
            hand_.move(groove.x + knobRadius + std::abs(span - frame * step % (2 * span)), y);
        });
        hand_.release();
        std::ignore = paintings_.untilQuietFor(quietTime);
    }

    void measureBoundary() {
        constexpr int y = 80;
        constexpr int middle = displayWidth / 2;
        constexpr int span = 600;
        constexpr int step = 15;
        hand_.holdOption();
        hand_.move(middle, y);
        std::ignore = paintings_.untilQuietFor(quietTime);
        hand_.press();
        follow("boundary on the screen", true,
               [&](int frame) { hand_.move(middle + step + std::abs(span - frame * step % (2 * span)), y); });
        hand_.move(middle, y);
        hand_.release();
        hand_.releaseOption();
        std::ignore = paintings_.untilQuietFor(quietTime);
    }

    // Moves the hand 60 times a second and counts the pictures that follow; then once more with a rest after
    // each move, which shows how long the pictures take.
    void follow(std::string_view what, bool isPreviewed, const std::function<void(int)>& move) {
        const Box area = settings_.area();
        int windows = 0;
        int previews = 0;
        for (auto [frame, next] = std::pair(0, Clock::now() + frameTime); frame < frames;
             ++frame, next += frameTime) {
            move(frame);
            const auto last = lastOf(paintings_.until(next), area);
            windows += last.inside ? 1 : 0;
            previews += last.outside ? 1 : 0;
        }
        std::ignore = paintings_.untilQuietFor(quietTime);
        std::vector<Milliseconds> times;
        for (int frame = 0; frame < frames; ++frame) {
            const auto begin = Clock::now();
            move(frame);
            const auto strokes = paintings_.untilQuietFor(2 * frameTime);
            if (!strokes.empty()) {
                times.emplace_back(strokes.back().time - begin);
            }
        }
        if (times.empty()) {
            throw std::runtime_error(fmt::format("nothing follows: {}", what));
        }
        const auto perSecond = [](int pictures) { return pictures * 60.0 / frames; };
        fmt::print("| {}, {:.1f} pictures a second", what, perSecond(windows));
        if (isPreviewed) {
            fmt::print(", {:.1f} of the preview", perSecond(previews));
        }
        fmt::print(" | {} |\n", middleAndEnds(std::move(times)));
    }

    // The parts of the grooves left of the knobs, which alone are of the accent's colour right of the
    // sidebar.
    [[nodiscard]] std::vector<Box> filledGrooves() const {
        constexpr int sidebarWidth = 240;
        constexpr int shortest = 8;
        const Box area = settings_.area();
        const karto::x11::Reply<xcb_get_image_reply_t> image{xcb_get_image_reply(
            server_.connection(),
            xcb_get_image(server_.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, server_.root(),
                          static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                          static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height),
                          ~0U),
            nullptr)};
        const std::span pixels(reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get())),
                               static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height));
        std::vector<Box> grooves;
        for (int y = 0; y < area.height; ++y) {
            const auto row =
                pixels.subspan(static_cast<std::size_t>(y) * static_cast<std::size_t>(area.width),
                               static_cast<std::size_t>(area.width));
            const auto first = std::find_if(row.begin() + sidebarWidth, row.end(), isColored);
            const auto last = std::find_if_not(first, row.end(), isColored);
            if (last - first < shortest) {
                continue;
            }
            if (grooves.empty() || grooves.back().y + grooves.back().height < area.y + y) {
                grooves.push_back({.x = area.x + static_cast<int>(first - row.begin()),
                                   .y = area.y + y,
                                   .width = static_cast<int>(last - first),
                                   .height = 0});
            }
            grooves.back().height = area.y + y + 1 - grooves.back().y;
        }
        return grooves;
    }

    static bool isColored(std::uint32_t pixel) {
        return std::abs(static_cast<int>(pixel >> 16 & 0xFF) - static_cast<int>(pixel & 0xFF)) > 40;
    }

    XServer server_;
    // What is painted must not wait for the answers to questions.
    XServer other_;
    Paintings paintings_{other_};
    Hand hand_{server_};
    SettingsOnDesktop settings_;
};

bool measure(std::span<char*> arguments) {
    const std::string_view what = arguments[1];
    const int times = arguments.size() > 3 ? std::stoi(arguments[3]) : 0;
    Bench bench(arguments[2]);
    if (what == "open") {
        bench.measureOpening(times);
    } else if (what == "drag") {
        bench.measureDrags();
    } else if (what == "layout") {
        bench.measureLayout();
    } else if (what == "repeat") {
        bench.repeat(times);
    } else if (what == "show") {
        bench.open();
    } else if (what == "hide") {
        bench.close();
    } else {
        return false;
    }
    return true;
}

} // namespace

int main(int count, char** values) {
    const std::span arguments(values, static_cast<std::size_t>(count));
    try {
        if (arguments.size() >= 3 && measure(arguments)) {
            return 0;
        }
    } catch (const std::exception& failure) {
        fmt::print(stderr, "SettingsLatency: {}\n", failure.what());
        return 1;
    }
    fmt::print(stderr, "SettingsLatency open|drag|layout|repeat|show|hide PROGRAM [TIMES]\n");
    return 2;
}
