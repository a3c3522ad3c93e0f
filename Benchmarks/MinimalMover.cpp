// The least that a program can do on a key press: one request that moves one window. What any window mover
// costs above this is its own.
//
//   MinimalMover blind|asking KEY=X,Y,WIDTH,HEIGHT...
//
// KEY is a letter or digit, held with Shift, Control, Alt and Super; the box is the frame's. "blind" moves
// the window that was active at the start and asks nothing; "asking" reads the active window and its frame
// extents first, at every press.

#include "XServer.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <map>
#include <span>
#include <stdexcept>
#include <string_view>

namespace karto::bench {
namespace {

struct Target {
    xcb_window_t window = XCB_WINDOW_NONE;
    Extents extents;
};

class Mover {
public:
    explicit Mover(const XServer& server)
        : server_(server)
        , moveResize_(server.atom("_NET_MOVERESIZE_WINDOW")) {}

    // The active window; no window while there is none with a frame.
    [[nodiscard]] Target ask() const {
        const auto active = server_.activeWindow();
        if (active == XCB_WINDOW_NONE)
            return {};
        const auto extents = server_.frameExtents(active);
        return extents ? Target{.window = active, .extents = *extents} : Target{};
    }

    [[nodiscard]] Target waitForTarget() const {
        const std::uint32_t properties = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(server_.connection(), server_.root(), XCB_CW_EVENT_MASK, &properties);
        Target target = ask();
        while (target.window == XCB_WINDOW_NONE) {
            std::ignore = server_.nextEvent(Clock::now() + std::chrono::seconds(1));
            target = ask();
        }
        const std::uint32_t none = XCB_EVENT_MASK_NO_EVENT;
        xcb_change_window_attributes(server_.connection(), server_.root(), XCB_CW_EVENT_MASK, &none);
        return target;
    }

    void move(const Target& target, const Box& frame) const {
        constexpr std::uint32_t northWest = 1;
        constexpr std::uint32_t allFour = 0xF << 8;
        constexpr std::uint32_t pager = 2 << 12;
        const auto pixels = [](int value) { return static_cast<std::uint32_t>(value); };
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = target.window;
        message.type = moveResize_;
        message.data.data32[0] = northWest | allFour | pager;
        message.data.data32[1] = pixels(frame.x);
        message.data.data32[2] = pixels(frame.y);
        message.data.data32[3] = pixels(frame.width - target.extents.left - target.extents.right);
        message.data.data32[4] = pixels(frame.height - target.extents.top - target.extents.bottom);
        xcb_send_event(server_.connection(), 0, server_.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        xcb_flush(server_.connection());
    }

private:
    const XServer& server_;
    xcb_atom_t moveResize_;
};

std::map<xcb_keycode_t, Box> grabKeys(const XServer& server, std::span<char* const> bindings) {
    constexpr auto hyper = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
    std::map<xcb_keycode_t, Box> boxes;
    for (const std::string_view binding : bindings) {
        if (binding.size() < 2 || binding[1] != '=')
            throw std::invalid_argument(fmt::format("\"{}\" is not KEY=X,Y,WIDTH,HEIGHT", binding));
        const auto key = server.keyCode(static_cast<xcb_keysym_t>(binding[0]));
        boxes[key] = Box::parse(binding.substr(2));
        const auto cookie = xcb_grab_key_checked(server.connection(), 0, server.root(), hyper, key,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        if (const x11::Reply<xcb_generic_error_t> error{xcb_request_check(server.connection(), cookie)})
            throw std::runtime_error(fmt::format("the key {} is taken", binding[0]));
    }
    return boxes;
}

[[noreturn]] void run(bool asking, std::span<char* const> bindings) {
    const XServer server;
    const auto boxes = grabKeys(server, bindings);
    const Mover mover(server);
    const Target known = mover.waitForTarget();
    while (true) {
        const x11::Event event{xcb_wait_for_event(server.connection())};
        if (!event)
            throw std::runtime_error("the X server went away");
        if (x11::eventCode(*event) != XCB_KEY_PRESS)
            continue;
        const auto& box = boxes.at(x11::eventAs<xcb_key_press_event_t>(*event).detail);
        mover.move(asking ? mover.ask() : known, box);
    }
}

} // namespace
} // namespace karto::bench

int main(int argc, char** argv) {
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    const std::string_view mode = argc > 2 ? arguments[1] : "";
    if (mode != "blind" && mode != "asking") {
        fmt::print(stderr, "usage: MinimalMover blind|asking KEY=X,Y,WIDTH,HEIGHT...\n");
        return EXIT_FAILURE;
    }
    try {
        karto::bench::run(mode == "asking", arguments.subspan(2));
    } catch (const std::exception& failure) {
        fmt::print(stderr, "MinimalMover: {}\n", failure.what());
        return EXIT_FAILURE;
    }
}
