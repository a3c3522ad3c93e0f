#pragma once
// What the update window says at each step of an update.

#include "Karto/Updates/UpdateCourse.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace karto {

// What a person can ask for in the update window.
enum class UpdateIntent : std::uint8_t { install, remindLater, skip, openPage, showFile, retry, close };

struct UpdateButton {
    UpdateIntent intent = UpdateIntent::close;
    std::string text;

    bool operator==(const UpdateButton&) const = default;
};

struct UpdateView {
    enum class Symbol : std::uint8_t { program, problem };

    Symbol symbol = Symbol::program;
    std::string heading;
    std::string text;
    // Plain text of any length; empty when there are none.
    std::string notes;
    // From 0 to 1, negative while nobody knows; absent when nothing goes on.
    std::optional<double> progress;
    std::string progressText;
    // From right to left; the first is the default.
    std::vector<UpdateButton> buttons;

    bool operator==(const UpdateView&) const = default;
};

struct UpdateFacts {
    std::string runningVersion;
    // Whether a package can replace the running program.
    bool replacesProgram = true;
    std::chrono::system_clock::time_point now;
};

UpdateView updateView(const UpdateState& state, const UpdateFacts& facts);

// The one update window.
class UpdateWindow {
public:
    virtual ~UpdateWindow() = default;

    // Shows the window with this content; brings it to the front when `isAsked`.
    virtual void show(const UpdateView& view, bool isAsked) = 0;
    virtual void close() = 0;

    // What the person asks for, from the event loop; closing the window is `close`.
    std::function<void(UpdateIntent)> onIntent;
};

} // namespace karto
