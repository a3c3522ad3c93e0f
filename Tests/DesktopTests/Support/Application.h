#pragma once
// A window of another program on the private desktop, and that program.

#include "Support/PrivateDesktop.h"

#include <functional>
#include <string>

namespace karto::desktop {

class Application {
public:
    // Starts the program and returns once its window, whose WM_CLASS instance is `name`, is managed, has its
    // decoration and is the active one.
    Application(PrivateDesktop& desktop, std::string name, const std::vector<std::string>& arguments);

    // The probe program with a window of the kind: plain, stepped, minimum, fixed, static, borderless,
    // shadowed, dialog or vanishing.
    static Application probe(PrivateDesktop& desktop, const std::string& kind, const std::string& name,
                             const Rect& area);
    static Application terminal(PrivateDesktop& desktop, const std::string& name);
    // A window that draws its own frame and an invisible shadow around it.
    static Application clientDecorated(PrivateDesktop& desktop, const std::string& name);

    [[nodiscard]] ChildProcess& process() { return process_; }

    [[nodiscard]] xcb_window_t window() const { return window_; }

    // The null rectangle once the window is gone.
    [[nodiscard]] Rect frame() const { return desktop_.get().x().frameOf(window_).value_or(Rect::null()); }

    [[nodiscard]] const std::string& name() const { return name_; }

    // Makes it the active window, or throws.
    void activate() const;

private:
    std::reference_wrapper<PrivateDesktop> desktop_;
    std::string name_;
    ChildProcess process_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
};

// A panel that keeps `height` pixels of the lower edge of `display` for itself; it has no managed window to
// wait for, so this returns once its strut stands.
ChildProcess startPanel(PrivateDesktop& desktop, const Rect& display, int height);

} // namespace karto::desktop
