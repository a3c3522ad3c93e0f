#include "Karto/Platform/X11/Windows/Accessibility.h"

#include "Karto/Platform/X11/Server/Activation.h"
#include "Karto/Platform/X11/Server/RootValue.h"

#include <algorithm>
#include <set>
#include <utility>

namespace karto::x11 {

namespace {

// How long a desktop that is still starting gets to bring up its window manager.
constexpr std::chrono::seconds loginPatience{5};
// How long a burst of changes of the active window is given to end.
constexpr std::chrono::milliseconds gatherTime{20};

// The window that an event reports a change of.
std::optional<xcb_window_t> subjectOf(const xcb_generic_event_t& event) {
    switch (eventCode(event)) {
    case XCB_CONFIGURE_NOTIFY: return eventAs<xcb_configure_notify_event_t>(event).window;
    case XCB_PROPERTY_NOTIFY: return eventAs<xcb_property_notify_event_t>(event).window;
    case XCB_DESTROY_NOTIFY: return eventAs<xcb_destroy_notify_event_t>(event).window;
    case XCB_MAP_NOTIFY: return eventAs<xcb_map_notify_event_t>(event).window;
    case XCB_UNMAP_NOTIFY: return eventAs<xcb_unmap_notify_event_t>(event).window;
    case XCB_REPARENT_NOTIFY: return eventAs<xcb_reparent_notify_event_t>(event).window;
    default: return std::nullopt;
    }
}

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
    , scheduler_(scheduler)
    , session_(std::move(session))
    , faces_(connection, installed)
    , placer_(connection, manager, scheduler)
    , events_(connection.observe([this](const xcb_generic_event_t& event) { noteEvent(event); }))
    , turnEnds_(connection.observeTurnEnds([this] {
        placer_.send();
        seen_.clear();
        seenDesktop_.reset();
    })) {}

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
    const auto window = activeWindow();
    const auto found = window ? facts(*window) : std::nullopt;
    return found ? std::optional(applicationNumber(*window, *found)) : std::nullopt;
}

std::vector<Application> Accessibility::runningApplications() {
    std::vector<Application> result;
    std::set<std::int32_t> known;
    const auto listed = clients(connection_.atoms().netClientList);
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
    const auto window = activeWindow();
    const auto found = window ? facts(*window) : std::nullopt;
    if (!found || !isOrdinary(*found) || applicationNumber(*window, *found) != pid) {
        return std::nullopt;
    }
    return WindowHandle{*window};
}

std::optional<std::vector<WindowHandle>> Accessibility::windows(std::int32_t pid) {
    std::vector<WindowHandle> result;
    for (const auto& client : clientsOf(pid)) {
        result.push_back({client.window});
    }
    return result;
}

std::shared_ptr<const Image> Accessibility::icon(std::int32_t pid) { return faces_.icon(clientsOf(pid)); }

std::optional<Point> Accessibility::position(WindowHandle window) {
    const auto found = facts(window.id);
    return found ? std::optional(found->visibleFrame().origin()) : std::nullopt;
}

std::optional<Size> Accessibility::size(WindowHandle window) {
    const auto found = facts(window.id);
    return found ? std::optional(found->visibleFrame().size()) : std::nullopt;
}

bool Accessibility::isPositionSettable(WindowHandle window) {
    const auto found = facts(window.id);
    return found && found->isManaged && isOrdinary(*found);
}

bool Accessibility::isSizeSettable(WindowHandle window) {
    // A window of fixed size is asked all the same: its manager keeps the size and still honours the
    // position.
    return isPositionSettable(window);
}

void Accessibility::setPosition(WindowHandle window, Point position) {
    if (const auto now = lastSeen(window.id)) {
        placer_.setOrigin(window.id, position, *now);
        sendUnlessMoreFollows();
    }
}

void Accessibility::setSize(WindowHandle window, Size size) {
    if (const auto now = lastSeen(window.id)) {
        placer_.setSize(window.id, size, *now);
        sendUnlessMoreFollows();
    }
}

void Accessibility::sendUnlessMoreFollows() {
    active_.facts.reset();
    if (!connection_.inTurn()) {
        placer_.send();
    }
}

std::optional<bool> Accessibility::isStandard(WindowHandle window) {
    const auto found = facts(window.id);
    if (!found) {
        return std::nullopt;
    }
    const bool isNormal = found->type == connection_.atoms().netWmWindowTypeNormal ||
                          (found->type == XCB_ATOM_NONE && !found->isTransient);
    return isNormal && isHere(*found) && found->isManaged && !found->isShaded && !found->skipsTaskbar;
}

std::optional<bool> Accessibility::isMinimized(WindowHandle window) {
    const auto found = facts(window.id);
    return found ? std::optional(found->isHidden) : std::nullopt;
}

std::optional<bool> Accessibility::isFullscreen(WindowHandle window) {
    const auto found = facts(window.id);
    return found ? std::optional(found->isFullscreen) : std::nullopt;
}

std::optional<std::string> Accessibility::title(WindowHandle window) {
    const auto found = facts(window.id);
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
    const auto own = clientsOf(pid);
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

std::optional<WindowFacts> Accessibility::facts(xcb_window_t window) {
    const auto deadline = deadlineFromNow();
    std::optional<WindowFacts> found;
    if (placer_.unsettled(window) != nullptr) {
        found = placer_.settle(window, deadline);
    } else if (const auto known = seen_.find(window); known != seen_.end()) {
        return known->second;
    } else if (connection_.inTurn() && window == active_.window && active_.facts) {
        return active_.facts;
    } else {
        found = FactsRequest(connection_, window).receive(connection_, deadline);
    }
    if (found) {
        remember(window, *found);
    } else {
        seen_.erase(window);
    }
    return found;
}

std::optional<WindowFacts> Accessibility::lastSeen(xcb_window_t window) {
    // Looking at a window that was just asked for something would wait for the outcome before all is asked.
    const auto* asked = placer_.unsettled(window);
    return asked != nullptr ? std::optional(*asked) : facts(window);
}

void Accessibility::remember(xcb_window_t window, const WindowFacts& facts) {
    if (connection_.inTurn()) {
        seen_.insert_or_assign(window, facts);
    }
    if (window == active_.window) {
        knowActive(facts);
    }
}

void Accessibility::knowActive(const WindowFacts& facts) {
    active_.facts = facts;
    if (facts.frame != active_.frame) {
        active_.frame = facts.frame;
        active_.frameEvents = facts.frame == XCB_WINDOW_NONE
                                  ? Registration()
                                  : connection_.select(facts.frame, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    }
}

std::optional<xcb_window_t> Accessibility::activeWindow() {
    if (!manager_.alive()) {
        return std::nullopt;
    }
    // While an event is handled, every change before it has been handled as well.
    if (!connection_.inTurn() || !active_.isKnown) {
        readActive();
    }
    return active_.window == XCB_WINDOW_NONE ? leftWindow() : std::optional(active_.window);
}

std::optional<xcb_window_t> Accessibility::leftWindow() {
    if (left_.window == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    const auto stack = clients(connection_.atoms().netClientListStacking);
    const auto left = std::ranges::find(stack, left_.window, &Client::window);
    if (left == stack.end() || !isSeen(left->facts)) {
        return std::nullopt;
    }
    const auto frame = left->facts.visibleFrame();
    const bool isCovered = std::any_of(std::next(left), stack.end(), [&](const Client& above) {
        return isSeen(above.facts) && overlapArea(frame, above.facts.visibleFrame()) > 0;
    });
    return isCovered ? std::nullopt : std::optional(left_.window);
}

bool Accessibility::isSeen(const WindowFacts& facts) {
    return facts.isManaged && !facts.isHidden && isHere(facts);
}

bool Accessibility::isHere(const WindowFacts& facts) {
    return !facts.desktop || facts.desktop == currentDesktop();
}

void Accessibility::readActive() {
    const auto told = rootValue(connection_, connection_.atoms().netActiveWindow, XCB_ATOM_WINDOW);
    active_.isKnown = told.has_value();
    const auto window = told.value_or(XCB_WINDOW_NONE);
    if (active_.window != window) {
        left_ = window == XCB_WINDOW_NONE
                    ? Left{.window = active_.window, .events = std::move(active_.events)}
                    : Left{};
        active_.window = window;
        active_.facts.reset();
        active_.events = active_.window == XCB_WINDOW_NONE
                             ? Registration()
                             : connection_.select(active_.window, XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                                                      XCB_EVENT_MASK_PROPERTY_CHANGE);
    }
    if (active_.window != XCB_WINDOW_NONE && !active_.facts) {
        const auto found = FactsRequest(connection_, active_.window).receive(connection_, deadlineFromNow());
        // A manager may go on naming a window that is gone.
        if (found) {
            knowActive(*found);
        } else {
            active_ = {};
        }
    }
}

void Accessibility::noteEvent(const xcb_generic_event_t& event) {
    const auto subject = subjectOf(event);
    if (!subject) {
        return;
    }
    const bool isActiveChange =
        subject == connection_.root() && eventCode(event) == XCB_PROPERTY_NOTIFY &&
        eventAs<xcb_property_notify_event_t>(event).atom == connection_.atoms().netActiveWindow;
    if (isActiveChange) {
        readActive();
        return;
    }
    // Another window may come under its number, of which nothing has been selected.
    if (eventCode(event) == XCB_DESTROY_NOTIFY && subject == left_.window) {
        left_ = {};
    }
    if (eventCode(event) == XCB_DESTROY_NOTIFY && subject == active_.window) {
        active_ = {};
        return;
    }
    // The count wraps around.
    const bool isNews =
        active_.facts && static_cast<std::int32_t>(event.full_sequence - active_.facts->sequence) >= 0;
    const bool isOfActive = subject == active_.window || subject == active_.frame;
    const bool isFollowed = subject == active_.window && isNews && active_.facts->follow(event);
    if (isOfActive && isNews && !isFollowed) {
        active_.facts.reset();
        // Read ahead, once for a burst of changes, so that a key pressed later finds it known.
        active_.reading = scheduler_.after(gatherTime, callbacks_.wrap([this] { readActive(); }));
    }
}

std::optional<std::uint32_t> Accessibility::currentDesktop() {
    if (seenDesktop_) {
        return seenDesktop_;
    }
    const auto desktop = rootValue(connection_, connection_.atoms().netCurrentDesktop, XCB_ATOM_CARDINAL);
    if (connection_.inTurn()) {
        seenDesktop_ = desktop;
    }
    return desktop;
}

std::vector<Client> Accessibility::clients(xcb_atom_t list) {
    if (!manager_.alive()) {
        return {};
    }
    const auto deadline = deadlineFromNow();
    const auto reply = connection_.await<xcb_get_property_reply_t>(
        requestProperty(connection_, connection_.root(), list, XCB_ATOM_WINDOW, mostWindows), deadline);
    std::vector<std::pair<xcb_window_t, std::optional<FactsRequest>>> requests;
    for (const auto window : words(reply.get())) {
        requests.emplace_back(
            window, seen_.contains(window) ? std::nullopt : std::optional(FactsRequest(connection_, window)));
    }
    std::vector<Client> result;
    for (const auto& [window, request] : requests) {
        const auto found =
            request ? request->receive(connection_, deadline) : std::optional(seen_.at(window));
        if (!found) {
            continue;
        }
        remember(window, *found);
        if (isOrdinary(*found)) {
            result.push_back({.window = window, .facts = *found});
        }
    }
    return result;
}

std::vector<Client> Accessibility::clientsOf(std::int32_t pid) {
    auto own = clients(connection_.atoms().netClientListStacking);
    std::erase_if(own, [pid](const Client& client) { return applicationNumber(client) != pid; });
    std::ranges::reverse(own);
    return own;
}

bool Accessibility::isOrdinary(const WindowFacts& facts) const {
    const auto& atoms = connection_.atoms();
    return facts.type != atoms.netWmWindowTypeDesktop && facts.type != atoms.netWmWindowTypeDock;
}

} // namespace karto::x11
