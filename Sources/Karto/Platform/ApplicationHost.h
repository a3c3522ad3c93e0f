#pragma once
// The program as its desktop sees it: event loop and dialogs.

#include <cstddef>
#include <string>
#include <vector>

namespace karto {

struct Alert {
    std::string message;
    // Paragraphs separated by empty lines.
    std::string informativeText;
    // The first is the default.
    std::vector<std::string> buttons;

    bool operator==(const Alert&) const = default;
};

class ApplicationHost {
public:
    virtual ~ApplicationHost() = default;

    // Shows a modal alert and returns the index of the button chosen; closing it counts as the last one.
    virtual std::size_t runAlert(const Alert& alert) = 0;

    // Writes a text and a line feed to standard output.
    virtual void print(const std::string& text) = 0;
};

} // namespace karto
