#pragma once
// A connection of the tests' own to an X server, with the few questions and requests that tests have. Frames
// are root coordinates and hold what a person sees: decorations included, invisible shadows left out. They
// are computed here from scratch, so that the program's own reading of a frame is checked against another
// one.

#include "KartoCore/Geometry.h"

#include <xcb/xcb.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace karto::desktop {

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

// Replies of xcb belong to their reader.
template<typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

class XClient {
public:
    // The server that DISPLAY names when `display` is empty. Throws when it cannot be reached.
    explicit XClient(const std::string& display);

    [[nodiscard]] xcb_connection_t* connection() const { return connection_.get(); }

    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }

    [[nodiscard]] xcb_window_t root() const { return screen_->root; }

    [[nodiscard]] xcb_atom_t atom(const std::string& name) const;

    // Properties of 32-bit items; empty when the window has no such property or is gone.
    [[nodiscard]] std::vector<std::uint32_t> property(xcb_window_t window, const std::string& name) const;
    void setProperty(xcb_window_t window, const std::string& name, xcb_atom_t type,
                     const std::vector<std::uint32_t>& items) const;
    void setText(xcb_window_t window, const std::string& name, const std::string& text) const;

    // Absent when the window is gone.
    [[nodiscard]] std::optional<Rect> frameOf(xcb_window_t window) const;

    // The managed window whose WM_CLASS instance is `name`.
    [[nodiscard]] std::optional<xcb_window_t> clientNamed(const std::string& name) const;
    // All of them, the oldest first.
    [[nodiscard]] std::vector<xcb_window_t> clientsNamed(const std::string& name) const;
    // A managed window of that process.
    [[nodiscard]] std::optional<xcb_window_t> clientOf(pid_t pid) const;
    [[nodiscard]] xcb_window_t activeWindow() const;
    // Whether the window's _NET_WM_STATE holds that state.
    [[nodiscard]] bool hasState(xcb_window_t window, const std::string& state) const;

    // The frames of the windows on the screen that no window manager manages, of the program whose WM_CLASS
    // instance is `name`, from left to right.
    [[nodiscard]] std::vector<Rect> unmanagedFrames(const std::string& name) const;

    // The same of windows that another program has taken into one of its own, as trays do.
    [[nodiscard]] std::vector<Rect> embeddedFrames(const std::string& name) const;
    // Does what a tray does that lets go of its icons and takes them anew.
    void inviteAnew(const std::string& name, const std::string& traySelection) const;

    // The place of the child of the root window that a person sees there; absent where there is none.
    [[nodiscard]] std::optional<Rect> outermostAt(Point point) const;

    // The colour 0xRRGGBB that a person sees there.
    [[nodiscard]] std::uint32_t colorAt(int x, int y) const;

    // Requests to the window manager; they return before it has acted.
    void activate(xcb_window_t window) const;
    void place(xcb_window_t window, const Rect& frame) const;
    void close(xcb_window_t window) const;
    void maximize(xcb_window_t window) const;
    void makeFullScreen(xcb_window_t window) const;
    void raise(xcb_window_t window) const;
    void lower(xcb_window_t window) const;

    // True once the manager has handled everything that was sent before; false when it does not answer. A
    // manager that cannot be asked counts as having answered.
    [[nodiscard]] bool managerAnswers(std::chrono::milliseconds timeout) const;

    void flush() const { xcb_flush(connection()); }

    // Returns once the server has carried out every request made here.
    void settle() const;

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    [[nodiscard]] std::vector<xcb_window_t> childrenOf(xcb_window_t window) const;
    // The instance of its WM_CLASS.
    [[nodiscard]] bool isNamed(xcb_window_t window, const std::string& name) const;
    [[nodiscard]] std::vector<xcb_window_t> embedded(const std::string& name) const;
    void tellRoot(std::uint32_t eventMask, xcb_window_t window, const std::string& message,
                  const std::array<std::uint32_t, 5>& items) const;
    [[nodiscard]] std::optional<Rect> clientArea(xcb_window_t window) const;
    // The child of the root that holds it.
    [[nodiscard]] xcb_window_t outermost(xcb_window_t window) const;
    void restack(xcb_window_t window, std::uint32_t mode) const;
    void askManager(xcb_window_t window, const std::string& message,
                    const std::array<std::uint32_t, 5>& items) const;

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    const xcb_screen_t* screen_ = nullptr;
};

} // namespace karto::desktop
