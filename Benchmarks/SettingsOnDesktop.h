#pragma once
// The settings window of a Karto that runs already, opened and used as a person would. It is the only window
// that the window manager manages.

#include "Keyboard.h"
#include "XServer.h"

#include <string>

namespace karto::bench {

class SettingsOnDesktop {
public:
    SettingsOnDesktop(const XServer& server, std::string program)
        : server_(server)
        , keyboard_(server)
        , program_(std::move(program)) {}

    // Starts the program once more, as the desktop's menu does, and returns the time just before; the window
    // is there afterwards, but maybe not painted.
    [[nodiscard]] Clock::time_point open() const;
    void close() const;

    // Of the window without its frame.
    [[nodiscard]] Box area() const;

    // From the list of sections, where the keyboard is at first. Returns the time just before.
    // NOLINTNEXTLINE(modernize-use-nodiscard): who only wants the section needs no time
    Clock::time_point showNextSection() const;

private:
    // No window while the settings are closed.
    [[nodiscard]] xcb_window_t window() const;

    const XServer& server_;
    Keyboard keyboard_;
    std::string program_;
};

} // namespace karto::bench
