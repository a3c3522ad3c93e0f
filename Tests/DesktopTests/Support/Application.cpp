#include "Support/Application.h"

#include <fmt/format.h>

namespace karto::desktop {

namespace {

std::vector<std::string> probeArguments(const std::string& kind, const std::string& name, const Rect& area) {
    return {KARTO_PROBE_PROGRAM,
            kind,
            name,
            fmt::format("{}", area.x),
            fmt::format("{}", area.y),
            fmt::format("{}", area.width),
            fmt::format("{}", area.height)};
}

} // namespace

Application::Application(PrivateDesktop& desktop, std::string name, const std::vector<std::string>& arguments)
    : desktop_(desktop)
    , name_(std::move(name))
    , process_(desktop.start(arguments)) {
    require("a window of " + name_, [&] {
        const auto found = desktop.x().clientNamed(name_);
        window_ = found.value_or(xcb_window_t{XCB_WINDOW_NONE});
        return found.has_value();
    });
    require("the frame of " + name_, [&] { return desktop.x().managerAnswers(patience); });
    activate();
}

Application Application::probe(PrivateDesktop& desktop, const std::string& kind, const std::string& name,
                               const Rect& area) {
    return {desktop, name, probeArguments(kind, name, area)};
}

Application Application::terminal(PrivateDesktop& desktop, const std::string& name) {
    return {desktop, name, {"xterm", "-name", name, "-geometry", "60x16+80+80"}};
}

Application Application::clientDecorated(PrivateDesktop& desktop, const std::string& name) {
    return {desktop, name, {"/usr/bin/python3", KARTO_CLIENT_DECORATED_SCRIPT, name}};
}

void Application::activate() const {
    const XClient& x = desktop_.get().x();
    // A manager that has just lost another window may give the keyboard to the root after it was asked.
    require(name_ + " to become active", [&] {
        x.activate(window_);
        return eventually([&] { return x.activeWindow() == window_; }, 1s);
    });
}

ChildProcess startPanel(PrivateDesktop& desktop, const Rect& display, int height) {
    const Rect area{
        .x = display.x, .y = display.maxY() - height, .width = display.width, .height = double(height)};
    ChildProcess panel = desktop.start(probeArguments("panel", "panel", area));
    require("the panel", [&] { return panel.output().ends_with('\n'); });
    return panel;
}

} // namespace karto::desktop
