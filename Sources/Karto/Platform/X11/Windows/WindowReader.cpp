#include "Karto/Platform/X11/Windows/WindowReader.h"

#include "Karto/Platform/X11/Server/RootValue.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace karto::x11 {

WindowReader::WindowReader(Connection& connection, WindowManager& manager, Scheduler& scheduler,
                           WindowPlacer& placer)
    : connection_(connection)
    , manager_(manager)
    , placer_(placer)
    , active_(connection, scheduler)
    , turnEnds_(connection.observeTurnEnds([this] {
        seen_.clear();
        seenDesktop_.reset();
    })) {}

std::optional<WindowFacts> WindowReader::facts(xcb_window_t window) {
    const auto deadline = deadlineFromNow();
    std::optional<WindowFacts> found;
    if (placer_.unsettled(window) != nullptr) {
        found = placer_.settle(window, deadline);
    } else if (const auto known = seen_.find(window); known != seen_.end()) {
        return known->second;
    } else if (auto told = active_.known(window)) {
        return told;
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

std::optional<WindowFacts> WindowReader::lastSeen(xcb_window_t window) {
    // Looking at a window that was just asked for something would wait for the outcome before all is asked.
    const auto* asked = placer_.unsettled(window);
    return asked != nullptr ? std::optional(*asked) : facts(window);
}

void WindowReader::remember(xcb_window_t window, const WindowFacts& facts) {
    if (connection_.inTurn()) {
        seen_.insert_or_assign(window, facts);
    }
    active_.learn(window, facts);
}

std::optional<xcb_window_t> WindowReader::activeWindow() {
    if (!manager_.alive()) {
        return std::nullopt;
    }
    const auto window = active_.current();
    return window == XCB_WINDOW_NONE ? leftWindow() : std::optional(window);
}

std::optional<xcb_window_t> WindowReader::leftWindow() {
    if (active_.left() == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    const auto stack = clients(connection_.atoms().netClientListStacking);
    const auto left = std::ranges::find(stack, active_.left(), &Client::window);
    if (left == stack.end() || !isSeen(left->facts)) {
        return std::nullopt;
    }
    const auto frame = left->facts.visibleFrame();
    const bool isCovered = std::any_of(std::next(left), stack.end(), [&](const Client& above) {
        return isSeen(above.facts) && overlapArea(frame, above.facts.visibleFrame()) > 0;
    });
    return isCovered ? std::nullopt : std::optional(active_.left());
}

bool WindowReader::isSeen(const WindowFacts& facts) {
    return facts.isManaged && !facts.isHidden && isHere(facts);
}

bool WindowReader::isHere(const WindowFacts& facts) {
    return !facts.desktop || facts.desktop == currentDesktop();
}

std::optional<std::uint32_t> WindowReader::currentDesktop() {
    if (seenDesktop_) {
        return seenDesktop_;
    }
    const auto desktop = rootValue(connection_, connection_.atoms().netCurrentDesktop, XCB_ATOM_CARDINAL);
    if (connection_.inTurn()) {
        seenDesktop_ = desktop;
    }
    return desktop;
}

std::vector<Client> WindowReader::clients(xcb_atom_t list) {
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

std::vector<Client> WindowReader::clientsOf(std::int32_t pid) {
    auto own = clients(connection_.atoms().netClientListStacking);
    std::erase_if(own, [pid](const Client& client) { return applicationNumber(client) != pid; });
    std::ranges::reverse(own);
    return own;
}

bool WindowReader::isOrdinary(const WindowFacts& facts) const {
    const auto& atoms = connection_.atoms();
    return facts.type != atoms.netWmWindowTypeDesktop && facts.type != atoms.netWmWindowTypeDock;
}

} // namespace karto::x11
