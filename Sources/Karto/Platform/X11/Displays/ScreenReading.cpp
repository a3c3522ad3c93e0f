#include "Karto/Platform/X11/Displays/ScreenReading.h"

#include "Karto/Platform/X11/Displays/MonitorReading.h"
#include "Karto/Platform/X11/Displays/Struts.h"
#include "Karto/Platform/X11/Server/Extensions.h"

#include <algorithm>
#include <set>
#include <utility>

namespace karto::x11 {

namespace {

// Tells a late answer from none: windows and outputs may vanish at any time.
bool passed(Deadline deadline) { return std::chrono::steady_clock::now() >= deadline; }

// The first flight: what there is.
struct Outline {
    Size desktop;
    // Null when the server knows no monitors.
    Reply<xcb_randr_get_monitors_reply_t> monitors;
    std::vector<xcb_window_t> clients;
    // Children of the root window that are no clients of the window manager.
    std::vector<xcb_window_t> others;
};

std::optional<Outline> readOutline(Connection& connection, bool hasRandr) {
    xcb_connection_t* const xcb = connection.get();
    const auto root = connection.root();
    const auto geometryRequest = xcb_get_geometry(xcb, root);
    const auto clientsRequest =
        requestProperty(connection, root, connection.atoms().netClientList, XCB_ATOM_WINDOW, mostWindows);
    const auto treeRequest = xcb_query_tree(xcb, root);
    const auto deadline = deadlineFromNow();
    Outline outline;
    if (hasRandr) {
        outline.monitors =
            connection.await<xcb_randr_get_monitors_reply_t>(xcb_randr_get_monitors(xcb, root, 1), deadline);
    }
    const auto geometry = connection.await<xcb_get_geometry_reply_t>(geometryRequest, deadline);
    const auto clients = connection.await<xcb_get_property_reply_t>(clientsRequest, deadline);
    const auto tree = connection.await<xcb_query_tree_reply_t>(treeRequest, deadline);
    if (!geometry || !clients || !tree || passed(deadline)) {
        return std::nullopt;
    }
    outline.desktop = {.width = double(geometry->width), .height = double(geometry->height)};
    const auto clientList = words(clients.get());
    outline.clients.assign(clientList.begin(), clientList.end());
    const std::set<xcb_window_t> known(clientList.begin(), clientList.end());
    const std::span children(xcb_query_tree_children(tree.get()),
                             static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    std::ranges::copy_if(children, std::back_inserter(outline.others),
                         [&](xcb_window_t child) { return !known.contains(child); });
    return outline;
}

struct WindowRequest {
    xcb_window_t window = XCB_WINDOW_NONE;
    xcb_get_property_cookie_t strutPartial{};
    xcb_get_property_cookie_t strut{};
    xcb_get_property_cookie_t type{};
    // A client counts also while it is minimized; any other window only while it is shown.
    std::optional<xcb_get_window_attributes_cookie_t> attributes = std::nullopt;
};

WindowRequest requestWindow(Connection& connection, xcb_window_t window) {
    const Atoms& atoms = connection.atoms();
    return {.window = window,
            .strutPartial = requestProperty(connection, window, atoms.netWmStrutPartial, XCB_ATOM_CARDINAL),
            .strut = requestProperty(connection, window, atoms.netWmStrut, XCB_ATOM_CARDINAL),
            .type = requestProperty(connection, window, atoms.netWmWindowType, XCB_ATOM_ATOM)};
}

std::vector<WindowRequest> requestWindows(Connection& connection, const Outline& outline) {
    std::vector<WindowRequest> requests;
    requests.reserve(outline.clients.size() + outline.others.size());
    for (const auto window : outline.clients) {
        requests.push_back(requestWindow(connection, window));
    }
    for (const auto window : outline.others) {
        requests.push_back(requestWindow(connection, window));
        requests.back().attributes = xcb_get_window_attributes(connection.get(), window);
    }
    return requests;
}

struct Panels {
    std::vector<xcb_window_t> windows;
    std::vector<Strut> struts;
};

Panels awaitPanels(Connection& connection, std::span<const WindowRequest> requests, Size desktop,
                   Deadline deadline) {
    Panels panels;
    for (const WindowRequest& request : requests) {
        const auto partial = connection.await<xcb_get_property_reply_t>(request.strutPartial, deadline);
        const auto plain = connection.await<xcb_get_property_reply_t>(request.strut, deadline);
        const auto type = connection.await<xcb_get_property_reply_t>(request.type, deadline);
        bool isShown = true;
        if (request.attributes) {
            const auto attributes =
                connection.await<xcb_get_window_attributes_reply_t>(*request.attributes, deadline);
            isShown = attributes && attributes->map_state != XCB_MAP_STATE_UNMAPPED;
        }
        const auto kept = struts(words(partial.get()), words(plain.get()), desktop);
        const auto types = words(type.get());
        const bool isDock = std::ranges::find(types, connection.atoms().netWmWindowTypeDock) != types.end();
        if (isDock || !kept.empty()) {
            panels.windows.push_back(request.window);
        }
        if (isShown) {
            panels.struts.insert(panels.struts.end(), kept.begin(), kept.end());
        }
    }
    return panels;
}

} // namespace

std::optional<ScreenReading> readScreens(Connection& connection, bool hasRandr) {
    const auto outline = readOutline(connection, hasRandr);
    if (!outline) {
        return std::nullopt;
    }
    const auto windows = requestWindows(connection, *outline);
    const auto deadline = deadlineFromNow();
    ScreenReading reading;
    if (outline->monitors) {
        const auto requests = requestMonitors(connection, *outline->monitors);
        for (Monitor& monitor : awaitMonitors(connection, requests, deadline)) {
            reading.screens.push_back(
                {.name = std::move(monitor.name), .frame = monitor.frame, .visibleFrame = {}});
        }
    }
    auto panels = awaitPanels(connection, windows, outline->desktop, deadline);
    if (passed(deadline)) {
        return std::nullopt;
    }
    if (!outline->monitors) {
        reading.screens.push_back(
            {.name = displayName(),
             .frame = {.width = outline->desktop.width, .height = outline->desktop.height},
             .visibleFrame = {}});
    }
    for (Screen& screen : reading.screens) {
        screen.visibleFrame = visibleFrame(screen.frame, outline->desktop, panels.struts);
    }
    reading.panels = std::move(panels.windows);
    return reading;
}

} // namespace karto::x11
