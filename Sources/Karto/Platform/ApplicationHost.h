#pragma once
// The program as its desktop sees it: event loop and dialogs.

#include "Karto/Platform/Registration.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace karto {

struct Alert {
    enum class Kind : std::uint8_t { warning, information };

    Kind kind = Kind::warning;
    std::string message;
    // Paragraphs separated by empty lines.
    std::string informativeText;
    // The first is the default.
    std::vector<std::string> buttons;

    bool operator==(const Alert&) const = default;
};

// What the About panel says.
struct About {
    std::string applicationName;
    std::string credits;

    bool operator==(const About&) const = default;
};

class ApplicationHost {
public:
    virtual ~ApplicationHost() = default;

    // Shows a modal alert and returns the index of the button chosen; closing it counts as the last one.
    virtual std::size_t runAlert(const Alert& alert) = 0;

    // Opens the About panel, or brings the open one to the front, and makes the program the active one.
    virtual void showAbout(const About& about) = 0;

    // Ends the program as soon as control is back in the event loop.
    virtual void terminate() = 0;

    // Writes a text and a line feed to standard output.
    virtual void print(const std::string& text) = 0;

    // Opens a file with the desktop's application for its kind. onFailure hears a sentence that says why
    // that is not possible, possibly after a while.
    virtual void openFile(const std::string& path, std::function<void(const std::string&)> onFailure) = 0;

    // Called once before the program ends because a person or the session asked for it.
    [[nodiscard]] virtual Registration observeTermination(std::function<void()> onTermination) = 0;
};

} // namespace karto
