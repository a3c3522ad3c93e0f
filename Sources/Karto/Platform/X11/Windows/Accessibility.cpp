#include "Karto/Platform/X11/Windows/Accessibility.h"

#include "Karto/Platform/X11/Server/Activation.h"

#include <algorithm>
#include <set>
#include <utility>

namespace karto::x11 {

namespace {

// How long a desktop that is still starting gets to bring up its window manager.
constexpr std::chrono::seconds loginPatience{5};

} // namespace

TrustProblem waylandProblem() {
    return {.cause = "this is a Wayland session, which lets no program move the windows of others",
            .explanation =
                "This is a Wayland session, which lets no program move the windows of others. Karto "
                "works in an X11 session: choose one when you log in."};
}

Accessibility::Accessibility(Connection& connection, WindowManager& manager, Scheduler& scheduler,
                             InstalledApplications& installed, SessionFacts session)
    : connection_(connection)
    , manager_(manager)
    , session_(std::move(session))
    , faces_(connection, installed)
    , placer_(connection, manager, scheduler)
    , windows_(connection, manager, scheduler, placer_)
    , turnEnds_(connection.observeTurnEnds([this] { placer_.send(); })) {}

bool Accessibility::isTrusted() { return !trustProblem(); }

bool Accessibility::requestTrust() {
    return !session_.isWayland && manager_.awaitAlive(deadlineFromNow(loginPatience));
}

std::optional<TrustProblem> Accessibility::trustProblem() {
    if (session_.isWayland) {
        return waylandProblem();
    }
    if (!manager_.alive()) {
        return TrustProblem{.cause = "no window manager that follows EWMH is running on this display",
                            .explanation = "No window manager that follows EWMH is running on this display. "
                                           "Karto asks the window manager to move windows and cannot work "
                                           "without one."};
    }
    return std::nullopt;
}

void Accessibility::openSettings() { session_.openSettings(); }

std::optional<std::int32_t> Accessibility::frontmostApplication() {
    const auto window = windows_.activeWindow();
    const auto found = window ? windows_.facts(*window) : std::nullopt;
    return found ? std::optional(applicationNumber(*window, *found)) : std::nullopt;
}

std::vector<Application> Accessibility::runningApplications() {
    std::vector<Application> result;
    std::set<std::int32_t> known;
    const auto listed = windows_.clients(connection_.atoms().netClientList);
    faces_.keepOnly(listed);
    for (const auto& client : listed) {
        const auto pid = applicationNumber(client);
        if (known.insert(pid).second) {
            result.push_back(
                {.pid = pid, .name = faces_.name(client), .isRegular = pid != session_.ownProcess});
        }
    }
    return result;
}

std::optional<WindowHandle> Accessibility::focusedWindow(std::int32_t pid) {
    const auto window = windows_.activeWindow();
    const auto found = window ? windows_.facts(*window) : std::nullopt;
    if (!found || !windows_.isOrdinary(*found) || applicationNumber(*window, *found) != pid) {
        return std::nullopt;
    }
    return WindowHandle{*window};
}

std::optional<std::vector<WindowHandle>> Accessibility::windows(std::int32_t pid) {
    std::vector<WindowHandle> result;
    for (const auto& client : windows_.clientsOf(pid)) {
        result.push_back({client.window});
    }
    return result;
}

std::shared_ptr<const Image> Accessibility::icon(std::int32_t pid) {
    return faces_.icon(windows_.clientsOf(pid));
}

std::optional<Point> Accessibility::position(WindowHandle window) {
    const auto found = windows_.facts(window.id);
    return found ? std::optional(found->visibleFrame().origin()) : std::nullopt;
}

std::optional<Size> Accessibility::size(WindowHandle window) {
    const auto found = windows_.facts(window.id);
    return found ? std::optional(found->visibleFrame().size()) : std::nullopt;
}

bool Accessibility::isPositionSettable(WindowHandle window) {
    const auto found = windows_.facts(window.id);
    return found && found->isManaged && windows_.isOrdinary(*found);
}

bool Accessibility::isSizeSettable(WindowHandle window) {
    // A window of fixed size is asked all the same: its manager keeps the size and still honours the
    // position.
    return isPositionSettable(window);
}

void Accessibility::setPosition(WindowHandle window, Point position) {
    if (const auto now = windows_.lastSeen(window.id)) {
        placer_.setOrigin(window.id, position, *now);
        sendUnlessMoreFollows();
    }
}

void Accessibility::setSize(WindowHandle window, Size size) {
    if (const auto now = windows_.lastSeen(window.id)) {
        placer_.setSize(window.id, size, *now);
        sendUnlessMoreFollows();
    }
}

void Accessibility::sendUnlessMoreFollows() {
    windows_.forgetActive();
    if (!connection_.inTurn()) {
        placer_.send();
    }
}

std::optional<bool> Accessibility::isStandard(WindowHandle window) {
    const auto found = windows_.facts(window.id);
    if (!found) {
        return std::nullopt;
    }
    const bool isNormal = found->type == connection_.atoms().netWmWindowTypeNormal ||
                          (found->type == XCB_ATOM_NONE && !found->isTransient);
    return isNormal && windows_.isHere(*found) && found->isManaged && !found->isShaded &&
           !found->skipsTaskbar;
}

std::optional<bool> Accessibility::isMinimized(WindowHandle window) {
    const auto found = windows_.facts(window.id);
    return found ? std::optional(found->isHidden) : std::nullopt;
}

std::optional<bool> Accessibility::isFullscreen(WindowHandle window) {
    const auto found = windows_.facts(window.id);
    return found ? std::optional(found->isFullscreen) : std::nullopt;
}

std::optional<std::string> Accessibility::title(WindowHandle window) {
    const auto found = windows_.facts(window.id);
    return found ? std::optional(found->title) : std::nullopt;
}

void Accessibility::raise(WindowHandle window) {
    constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
    const auto restack = connection_.atoms().netRestackWindow;
    if (manager_.supports(restack)) {
        connection_.tellWindowManager(window.id, restack, {sourceIsPager, XCB_WINDOW_NONE, above, 0, 0});
    } else {
        xcb_configure_window(connection_.get(), window.id, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
    connection_.flush();
    lastRaised_ = window.id;
}

void Accessibility::activate(std::int32_t pid) {
    const auto own = windows_.clientsOf(pid);
    if (own.empty()) {
        return;
    }
    const auto raised = std::ranges::find(own, lastRaised_, &Client::window);
    const auto window = raised != own.end() ? raised->window : own.front().window;
    x11::activate(connection_, window);
}

Registration Accessibility::observeClosing(WindowHandle window, std::function<void()> onClosed) {
    struct Watch {
        Registration selection;
        Registration events;
    };

    const auto watch = std::make_shared<Watch>();
    watch->selection = connection_.select(window.id, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    watch->events = connection_.observe([window, onClosed = std::move(onClosed)](const auto& event) {
        if (eventCode(event) == XCB_DESTROY_NOTIFY &&
            eventAs<xcb_destroy_notify_event_t>(event).window == window.id) {
            onClosed();
        }
    });
    return Registration([watch] { *watch = {}; });
}

} // namespace karto::x11
