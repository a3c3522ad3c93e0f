#include "Karto/Platform/X11/Displays/PanelReading.h"

#include <algorithm>

namespace karto::x11 {

namespace {

WindowRequest requestWindow(Connection& connection, xcb_window_t window) {
    const Atoms& atoms = connection.atoms();
    return {.window = window,
            .strutPartial = requestProperty(connection, window, atoms.netWmStrutPartial, XCB_ATOM_CARDINAL),
            .strut = requestProperty(connection, window, atoms.netWmStrut, XCB_ATOM_CARDINAL),
            .type = requestProperty(connection, window, atoms.netWmWindowType, XCB_ATOM_ATOM)};
}

// Where it is, with its border; absent for one that is hidden, or that nobody can see.
std::optional<Rect> awaitPlace(Connection& connection, const WindowRequest::Other& request,
                               Deadline deadline) {
    const auto attributes = connection.await<xcb_get_window_attributes_reply_t>(request.attributes, deadline);
    const auto geometry = connection.await<xcb_get_geometry_reply_t>(request.geometry, deadline);
    if (!attributes || !geometry || attributes->map_state == XCB_MAP_STATE_UNMAPPED ||
        attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY) {
        return std::nullopt;
    }
    const double border = 2.0 * geometry->border_width;
    return Rect{.x = double(geometry->x),
                .y = double(geometry->y),
                .width = geometry->width + border,
                .height = geometry->height + border};
}

// Some managers tell how deep their panels are and leave the ranges at zero: those are as long as the window.
void fillInSpans(std::vector<Strut>& struts, const Rect& place) {
    constexpr Span untold{.from = 0, .to = 1};
    for (Strut& strut : struts) {
        if (strut.span == untold) {
            strut.span = spanOf(place, strut.edge);
        }
    }
}

} // namespace

std::vector<WindowRequest> requestWindows(Connection& connection, const DesktopWindows& windows) {
    std::vector<WindowRequest> requests;
    requests.reserve(windows.clients.size() + windows.others.size());
    for (const auto window : windows.clients) {
        requests.push_back(requestWindow(connection, window));
    }
    for (const auto window : windows.others) {
        requests.push_back(requestWindow(connection, window));
        requests.back().other = {.attributes = xcb_get_window_attributes(connection.get(), window),
                                 .geometry = xcb_get_geometry(connection.get(), window)};
    }
    return requests;
}

Panels awaitPanels(Connection& connection, std::span<const WindowRequest> requests, Size desktop,
                   Deadline deadline) {
    Panels panels;
    for (const WindowRequest& request : requests) {
        const auto partial = connection.await<xcb_get_property_reply_t>(request.strutPartial, deadline);
        const auto plain = connection.await<xcb_get_property_reply_t>(request.strut, deadline);
        const auto type = connection.await<xcb_get_property_reply_t>(request.type, deadline);
        const auto place = request.other ? awaitPlace(connection, *request.other, deadline) : std::nullopt;
        auto kept = struts(words(partial.get()), words(plain.get()), desktop);
        if (place) {
            fillInSpans(kept, *place);
        }
        const auto types = words(type.get());
        const bool isDock = std::ranges::find(types, connection.atoms().netWmWindowTypeDock) != types.end();
        if (isDock || !kept.empty()) {
            panels.windows.push_back(request.window);
        }
        if (kept.empty() && place) {
            panels.others.emplace(request.window, *place);
        }
        if (!request.other || place) {
            panels.struts.insert(panels.struts.end(), kept.begin(), kept.end());
        }
    }
    return panels;
}

std::set<xcb_window_t> outermost(Connection& connection, const std::vector<xcb_window_t>& windows,
                                 Deadline deadline) {
    std::set<xcb_window_t> result;
    std::set<xcb_window_t> level(windows.begin(), windows.end());
    while (!level.empty()) {
        std::map<xcb_window_t, xcb_query_tree_cookie_t> requests;
        for (const auto window : level) {
            requests.emplace(window, xcb_query_tree(connection.get(), window));
        }
        level.clear();
        for (const auto& [window, request] : requests) {
            const auto tree = connection.await<xcb_query_tree_reply_t>(request, deadline);
            if (tree && tree->parent == connection.root()) {
                result.insert(window);
            } else if (tree && tree->parent != XCB_WINDOW_NONE) {
                level.insert(tree->parent);
            }
        }
    }
    return result;
}

} // namespace karto::x11
