#include "SettingsOnDesktop.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <thread>

namespace karto::bench {
namespace {

constexpr xcb_keysym_t downSymbol = 0xFF54;
constexpr auto patience = std::chrono::seconds(10);
constexpr auto glance = std::chrono::microseconds(500);

pid_t start(std::string program) {
    pid_t process = 0;
    std::array<char*, 2> arguments{program.data(), nullptr};
    if (posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments.data(), environ) != 0)
        throw std::runtime_error("cannot start " + program);
    return process;
}

} // namespace

Clock::time_point SettingsOnDesktop::open() const {
    const auto begin = Clock::now();
    const pid_t second = start(program_);
    while (window() == XCB_WINDOW_NONE) {
        if (Clock::now() - begin > patience)
            throw std::runtime_error("the settings do not open");
        std::this_thread::sleep_for(glance);
    }
    int status = 0;
    waitpid(second, &status, 0);
    return begin;
}

void SettingsOnDesktop::close() const {
    const xcb_window_t closing = window();
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = closing;
    message.type = server_.atom("_NET_CLOSE_WINDOW");
    xcb_send_event(server_.connection(), 0, server_.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    const auto begin = Clock::now();
    while (window() == closing) {
        if (Clock::now() - begin > patience)
            throw std::runtime_error("the settings do not close");
        std::this_thread::sleep_for(glance);
    }
}

Box SettingsOnDesktop::area() const {
    auto* const connection = server_.connection();
    const xcb_window_t inner = window();
    const x11::Reply<xcb_get_geometry_reply_t> geometry{
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, inner), nullptr)};
    const x11::Reply<xcb_translate_coordinates_reply_t> corner{xcb_translate_coordinates_reply(
        connection, xcb_translate_coordinates(connection, inner, server_.root(), 0, 0), nullptr)};
    if (!geometry || !corner)
        throw std::runtime_error("the settings are closed");
    return {.x = corner->dst_x, .y = corner->dst_y, .width = geometry->width, .height = geometry->height};
}

Clock::time_point SettingsOnDesktop::showNextSection() const {
    const xcb_keycode_t down = server_.keyCode(downSymbol);
    const auto begin = keyboard_.press(down);
    keyboard_.release(down);
    return begin;
}

xcb_window_t SettingsOnDesktop::window() const {
    const auto managed = server_.managedWindows();
    return managed.empty() ? xcb_window_t{XCB_WINDOW_NONE} : managed.front();
}

} // namespace karto::bench
