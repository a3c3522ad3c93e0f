#include "XServer.h"

#include <fmt/format.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <stdexcept>

namespace karto::bench {

Box Box::parse(std::string_view text) {
    std::array<int, 4> numbers{};
    const char* position = text.data();
    const char* const end = position + text.size();
    for (int& number : numbers) {
        const auto [next, error] = std::from_chars(position, end, number);
        const bool last = &number == &numbers.back();
        if (error != std::errc{} || last != (next == end) || (!last && *next != ','))
            throw std::invalid_argument(fmt::format("\"{}\" is not X,Y,WIDTH,HEIGHT", text));
        position = last ? next : next + 1;
    }
    return {.x = numbers[0], .y = numbers[1], .width = numbers[2], .height = numbers[3]};
}

XServer::XServer() {
    int screen = 0;
    connection_.reset(xcb_connect(nullptr, &screen));
    if (xcb_connection_has_error(connection()) != 0)
        throw std::runtime_error("no X server answers on DISPLAY");
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection()));
    for (; screen > 0; --screen)
        xcb_screen_next(&screens);
    screen_ = screens.data;
    activeWindowAtom_ = atom("_NET_ACTIVE_WINDOW");
    clientListAtom_ = atom("_NET_CLIENT_LIST");
    frameExtentsAtom_ = atom("_NET_FRAME_EXTENTS");
}

xcb_atom_t XServer::atom(std::string_view name) const {
    const auto cookie =
        xcb_intern_atom(connection(), 0, static_cast<std::uint16_t>(name.size()), name.data());
    const x11::Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(connection(), cookie, nullptr)};
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_keycode_t XServer::keyCode(xcb_keysym_t symbol) const {
    const xcb_setup_t& setup = *xcb_get_setup(connection());
    const int count = setup.max_keycode - setup.min_keycode + 1;
    const auto cookie =
        xcb_get_keyboard_mapping(connection(), setup.min_keycode, static_cast<std::uint8_t>(count));
    const x11::Reply<xcb_get_keyboard_mapping_reply_t> reply{
        xcb_get_keyboard_mapping_reply(connection(), cookie, nullptr)};
    if (!reply)
        throw std::runtime_error("the server does not tell its keyboard mapping");
    const std::span symbols(xcb_get_keyboard_mapping_keysyms(reply.get()),
                            static_cast<std::size_t>(count) * reply->keysyms_per_keycode);
    for (std::size_t first = 0; first < symbols.size(); first += reply->keysyms_per_keycode)
        if (symbols[first] == symbol)
            return static_cast<xcb_keycode_t>(setup.min_keycode + first / reply->keysyms_per_keycode);
    throw std::runtime_error(fmt::format("no key gives the symbol {:#x}", symbol));
}

xcb_window_t XServer::activeWindow() const {
    const auto active = numbers(root(), activeWindowAtom_);
    return active.empty() ? xcb_window_t{XCB_WINDOW_NONE} : active[0];
}

std::vector<xcb_window_t> XServer::managedWindows() const { return numbers(root(), clientListAtom_); }

std::optional<Extents> XServer::frameExtents(xcb_window_t window) const {
    const auto sides = numbers(window, frameExtentsAtom_);
    if (sides.size() != 4)
        return std::nullopt;
    const auto side = [&](std::size_t index) { return static_cast<int>(sides[index]); };
    return Extents{.left = side(0), .right = side(1), .top = side(2), .bottom = side(3)};
}

std::vector<std::uint32_t> XServer::numbers(xcb_window_t window, xcb_atom_t property) const {
    constexpr std::uint32_t mostNumbers = 64;
    const auto cookie =
        xcb_get_property(connection(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, mostNumbers);
    const x11::Reply<xcb_get_property_reply_t> reply{xcb_get_property_reply(connection(), cookie, nullptr)};
    if (!reply || reply->format != 32)
        return {};
    const auto* const values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

x11::Event XServer::nextEvent(Clock::time_point deadline) const {
    xcb_flush(connection());
    while (true) {
        if (x11::Event event{xcb_poll_for_event(connection())})
            return event;
        if (xcb_connection_has_error(connection()) != 0)
            throw std::runtime_error("the X server went away");
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0)
            return nullptr;
        pollfd descriptor{.fd = xcb_get_file_descriptor(connection()), .events = POLLIN, .revents = 0};
        poll(&descriptor, 1, static_cast<int>(left.count()));
    }
}

void XServer::sync() const {
    const x11::Reply<xcb_get_input_focus_reply_t> reply{
        xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr)};
}

} // namespace karto::bench
