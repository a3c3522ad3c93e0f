#include "Karto/Platform/X11/Displays/ScreenReading.h"

#include "Karto/Platform/X11/Displays/MonitorReading.h"
#include "Karto/Platform/X11/Displays/PanelReading.h"
#include "Karto/Platform/X11/Displays/WorkArea.h"
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
    DesktopWindows windows;
    std::optional<CurrentDesktop> current;
};

DesktopWindows desktopWindows(const xcb_query_tree_reply_t& tree, std::span<const std::uint32_t> clients) {
    const std::set<xcb_window_t> known(clients.begin(), clients.end());
    const std::span children(xcb_query_tree_children(&tree),
                             static_cast<std::size_t>(xcb_query_tree_children_length(&tree)));
    DesktopWindows windows{.clients = {clients.begin(), clients.end()}, .others = {}};
    std::ranges::copy_if(children, std::back_inserter(windows.others),
                         [&](xcb_window_t child) { return !known.contains(child); });
    return windows;
}

std::optional<Outline> readOutline(Connection& connection, bool hasRandr) {
    xcb_connection_t* const xcb = connection.get();
    const auto root = connection.root();
    const auto geometryRequest = xcb_get_geometry(xcb, root);
    const auto clientsRequest =
        requestProperty(connection, root, connection.atoms().netClientList, XCB_ATOM_WINDOW, mostWindows);
    const auto treeRequest = xcb_query_tree(xcb, root);
    const auto currentRequest = requestCurrentDesktop(connection);
    const auto deadline = deadlineFromNow();
    Outline outline;
    if (hasRandr) {
        outline.monitors =
            connection.await<xcb_randr_get_monitors_reply_t>(xcb_randr_get_monitors(xcb, root, 1), deadline);
    }
    const auto geometry = connection.await<xcb_get_geometry_reply_t>(geometryRequest, deadline);
    const auto clients = connection.await<xcb_get_property_reply_t>(clientsRequest, deadline);
    const auto tree = connection.await<xcb_query_tree_reply_t>(treeRequest, deadline);
    if (!geometry || !clients || !tree) {
        return std::nullopt;
    }
    outline.desktop = {.width = double(geometry->width), .height = double(geometry->height)};
    outline.windows = desktopWindows(*tree, words(clients.get()));
    outline.current = awaitCurrentDesktop(connection, currentRequest, outline.desktop, deadline);
    if (passed(deadline)) {
        return std::nullopt;
    }
    return outline;
}

// The manager's own panels. Only windows that could be one are looked at more closely.
std::map<xcb_window_t, Strut> awaitOwnPanels(Connection& connection, const Outline& outline,
                                             const std::map<xcb_window_t, Rect>& windows,
                                             std::span<const Rect> frames, Deadline deadline) {
    std::map<xcb_window_t, Strut> panels;
    if (!outline.current || !outline.current->workArea) {
        return panels;
    }
    for (const auto& [window, place] : windows) {
        if (const auto band = panelBand(place, frames, outline.desktop, *outline.current->workArea)) {
            panels.emplace(window, *band);
        }
    }
    if (!panels.empty()) {
        for (const auto frame : outermost(connection, outline.windows.clients, deadline)) {
            panels.erase(frame);
        }
    }
    return panels;
}

} // namespace

std::optional<ScreenReading> readScreens(Connection& connection, bool hasRandr, AreaAtoms& areaAtoms) {
    const auto outline = readOutline(connection, hasRandr);
    if (!outline) {
        return std::nullopt;
    }
    const Size desktop = outline->desktop;
    std::optional<xcb_get_property_cookie_t> areasRequest;
    if (outline->current) {
        areasRequest = requestAreasByMonitor(connection, outline->current->number, areaAtoms);
    }
    const auto windowRequests = requestWindows(connection, outline->windows);
    const auto deadline = deadlineFromNow();
    std::vector<Monitor> monitors{
        {.name = displayName(), .frame = {.width = desktop.width, .height = desktop.height}}};
    if (outline->monitors) {
        monitors = awaitMonitors(connection, requestMonitors(connection, *outline->monitors), deadline);
    }
    DeclaredAreas declared;
    if (outline->current) {
        declared.whole = outline->current->workArea;
    }
    if (areasRequest) {
        declared.byMonitor = awaitAreasByMonitor(connection, *areasRequest, desktop, deadline);
    }
    auto panels = awaitPanels(connection, windowRequests, desktop, deadline);
    std::vector<Rect> frames;
    std::ranges::transform(monitors, std::back_inserter(frames), &Monitor::frame);
    std::vector<Strut> ownBands;
    for (const auto& [window, band] : awaitOwnPanels(connection, *outline, panels.others, frames, deadline)) {
        panels.windows.push_back(window);
        ownBands.push_back(band);
    }
    if (passed(deadline)) {
        return std::nullopt;
    }
    const auto visible = visibleFrames(frames, desktop, panels.struts, ownBands, declared);
    ScreenReading reading{.screens = {}, .panels = std::move(panels.windows)};
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        reading.screens.push_back(
            {.name = std::move(monitors[i].name), .frame = frames[i], .visibleFrame = visible[i]});
    }
    return reading;
}

} // namespace karto::x11
