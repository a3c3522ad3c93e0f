// How long the windows that Karto shows take to appear, from the key that asks for them until the server has
// painted all of them, the overlay's delay of 0.3 seconds taken off. Karto runs already.
//
//   AppearLatency overlay WINDOWS [composited]     hyper held: that many windows of 3840x2160
//   AppearLatency switcher [composited]            hyper held and Tab pressed: a panel 420 wide

#include "CompositorStandIn.h"
#include "Keyboard.h"

#include <fmt/format.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <set>
#include <span>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace karto::bench;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int rounds = 41;
constexpr auto patience = std::chrono::seconds(10);
// Until the desktop is quiet again.
constexpr auto pause = std::chrono::milliseconds(60);
constexpr auto overlayDelay = std::chrono::milliseconds(300);
constexpr int displayWidth = 3840;
constexpr int panelWidth = 420;
constexpr xcb_keysym_t tabSymbol = 0xFF09;

// Children of the root of one width, by what the server reports of them.
class Watch {
public:
    Watch(const XServer& server, int width)
        : server_(server)
        , width_(width) {
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(server.connection(), server.root(), XCB_CW_EVENT_MASK, &mask);
        server.sync();
    }

    void waitUntilShown(std::size_t count) {
        while (shown_.size() < count) {
            follow(next());
        }
    }

    void waitUntilHidden() {
        while (!shown_.empty()) {
            follow(next());
        }
    }

private:
    [[nodiscard]] karto::x11::Event next() const {
        auto event = server_.nextEvent(Clock::now() + patience);
        if (!event) {
            throw std::runtime_error("Karto shows too few windows, or hides too few");
        }
        return event;
    }

    void follow(const karto::x11::Event& event) {
        switch (event->response_type & 0x7F) {
        case XCB_MAP_NOTIFY: look(reinterpret_cast<const xcb_map_notify_event_t&>(*event).window); break;
        case XCB_CONFIGURE_NOTIFY:
            look(reinterpret_cast<const xcb_configure_notify_event_t&>(*event).window);
            break;
        case XCB_UNMAP_NOTIFY:
            shown_.erase(reinterpret_cast<const xcb_unmap_notify_event_t&>(*event).window);
            break;
        default: break;
        }
    }

    // Windows that wait beyond the left edge of the desktop are not shown.
    void look(xcb_window_t window) {
        const auto attributesCookie = xcb_get_window_attributes(server_.connection(), window);
        const auto geometryCookie = xcb_get_geometry(server_.connection(), window);
        const karto::x11::Reply<xcb_get_window_attributes_reply_t> attributes{
            xcb_get_window_attributes_reply(server_.connection(), attributesCookie, nullptr)};
        const karto::x11::Reply<xcb_get_geometry_reply_t> geometry{
            xcb_get_geometry_reply(server_.connection(), geometryCookie, nullptr)};
        if (!attributes || !geometry || geometry->width != width_) {
            return;
        }
        if (attributes->map_state == XCB_MAP_STATE_VIEWABLE && geometry->x >= 0) {
            shown_.insert(window);
        } else {
            shown_.erase(window);
        }
    }

    const XServer& server_;
    int width_;
    std::set<xcb_window_t> shown_;
};

// The windows come out of one grab of the server, so that an answer to a question asked when they are there
// says that they are painted too.
Milliseconds showOverlay(const XServer& server, const Keyboard& keyboard, Watch& watch, std::size_t windows) {
    const auto start = keyboard.pressHyper();
    watch.waitUntilShown(windows);
    server.sync();
    const auto time = Clock::now() - start - overlayDelay;
    keyboard.releaseHyper();
    watch.waitUntilHidden();
    return time;
}

Milliseconds showSwitcher(const XServer& server, const Keyboard& keyboard, Watch& watch) {
    const xcb_keycode_t tab = server.keyCode(tabSymbol);
    keyboard.holdHyper();
    const auto start = keyboard.press(tab);
    watch.waitUntilShown(1);
    server.sync();
    const auto time = Clock::now() - start;
    keyboard.release(tab);
    watch.waitUntilHidden();
    return time;
}

void print(std::string_view what, bool isComposited, std::span<const Milliseconds> times) {
    std::vector again(times.begin() + 1, times.end());
    std::ranges::sort(again);
    fmt::print("| {} | {} | {:.1f} | {:.1f} | {:.1f} |\n", what, isComposited ? "yes" : "no",
               times[0].count(), again[again.size() / 2].count(), again.back().count());
}

void measure(std::span<char*> arguments) {
    const bool isComposited = arguments.back() == std::string_view("composited");
    const XServer server;
    if (isComposited) {
        standInForCompositor(server);
    }
    const Keyboard keyboard(server);
    std::vector<Milliseconds> times;
    if (arguments[1] == std::string_view("switcher")) {
        Watch watch(server, panelWidth);
        for (int round = 0; round < rounds; ++round) {
            times.push_back(showSwitcher(server, keyboard, watch));
            std::this_thread::sleep_for(pause);
        }
        print("switcher with ten windows", isComposited, times);
        return;
    }
    const auto windows = static_cast<std::size_t>(std::stoul(arguments[2]));
    Watch watch(server, displayWidth);
    for (int round = 0; round < rounds; ++round) {
        times.push_back(showOverlay(server, keyboard, watch, windows));
        std::this_thread::sleep_for(pause);
    }
    print(fmt::format("overlay on {} display{}", windows, windows == 1 ? "" : "s"), isComposited, times);
}

} // namespace

int main(int count, char** values) {
    const std::span arguments(values, static_cast<std::size_t>(count));
    if (arguments.size() < 2) {
        fmt::print(stderr, "AppearLatency overlay WINDOWS [composited] | switcher [composited]\n");
        return 2;
    }
    try {
        measure(arguments);
    } catch (const std::exception& failure) {
        fmt::print(stderr, "AppearLatency: {}\n", failure.what());
        return 1;
    }
    return 0;
}
