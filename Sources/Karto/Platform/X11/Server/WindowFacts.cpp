#include "Karto/Platform/X11/Server/WindowFacts.h"

#include "Karto/Platform/X11/Server/TopLevel.h"

#include <xcb/res.h>

#include <algorithm>
#include <string_view>

namespace karto::x11 {

namespace {

constexpr std::uint32_t longestTitle = 256;
constexpr std::uint32_t onAllDesktops = 0xFFFFFFFF;
constexpr std::uint32_t iconicState = 3;

Insets insets(std::span<const std::uint32_t> values) {
    if (values.size() < 4) {
        return {};
    }
    // A nonsensical value must not overflow what is computed from it.
    const auto pixels = [](std::uint32_t value) {
        return static_cast<int>(std::min<std::uint32_t>(value, mostPixels));
    };
    return {.left = pixels(values[0]),
            .right = pixels(values[1]),
            .top = pixels(values[2]),
            .bottom = pixels(values[3])};
}

// The first type that says what the window is; one toolkit puts a mere hint before it.
xcb_atom_t knownType(std::span<const std::uint32_t> types, const Atoms& atoms) {
    const auto known = std::ranges::find_if(
        types, [&](std::uint32_t type) { return type != atoms.kdeNetWmWindowTypeOverride; });
    return known == types.end() ? xcb_atom_t{XCB_ATOM_NONE} : *known;
}

std::string classOf(std::string_view instanceAndClass) {
    const auto separator = instanceAndClass.find('\0');
    if (separator == std::string_view::npos) {
        return std::string(instanceAndClass);
    }
    const auto rest = instanceAndClass.substr(separator + 1);
    const auto name = rest.substr(0, rest.find('\0'));
    return std::string(name.empty() ? instanceAndClass.substr(0, separator) : name);
}

std::int32_t localProcess(const xcb_res_query_client_ids_reply_t* reply) {
    if (reply == nullptr) {
        return 0;
    }
    for (auto ids = xcb_res_query_client_ids_ids_iterator(reply); ids.rem > 0;
         xcb_res_client_id_value_next(&ids)) {
        if ((ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0 && ids.data->length >= 4) {
            return static_cast<std::int32_t>(*xcb_res_client_id_value_value(ids.data));
        }
    }
    return 0;
}

// What lies between a client and the outermost window around it, for managers that do not tell. Where the
// client is its own outermost window nothing does.
void measureFrame(Connection& connection, xcb_window_t window, WindowFacts& facts, Deadline deadline) {
    const auto frame = topLevelOf(connection, window, deadline);
    if (!frame || frame == window) {
        return;
    }
    const auto frameRequest = xcb_get_geometry(connection.get(), *frame);
    const auto clientRequest = xcb_get_geometry(connection.get(), window);
    const auto placeRequest = xcb_translate_coordinates(connection.get(), window, *frame, 0, 0);
    const auto outer = connection.await<xcb_get_geometry_reply_t>(frameRequest, deadline);
    const auto inner = connection.await<xcb_get_geometry_reply_t>(clientRequest, deadline);
    const auto place = connection.await<xcb_translate_coordinates_reply_t>(placeRequest, deadline);
    if (!outer || !inner || !place) {
        return;
    }
    facts.frame = *frame;
    facts.decoration = {.left = outer->border_width + place->dst_x,
                        .right = outer->width + outer->border_width - place->dst_x - inner->width,
                        .top = outer->border_width + place->dst_y,
                        .bottom = outer->height + outer->border_width - place->dst_y - inner->height};
}

} // namespace

Rect WindowFacts::visibleFrame() const {
    return {
        .x = static_cast<double>(x - decoration.left + shadow.left),
        .y = static_cast<double>(y - decoration.top + shadow.top),
        .width = static_cast<double>(width + decoration.left + decoration.right - shadow.left - shadow.right),
        .height =
            static_cast<double>(height + decoration.top + decoration.bottom - shadow.top - shadow.bottom)};
}

bool WindowFacts::follow(const xcb_generic_event_t& event) {
    // The window manager tells a window that it has moved where it is on the root. What the server tells
    // counts from the frame.
    if (eventCode(event) != XCB_CONFIGURE_NOTIFY || !isSentByClient(event)) {
        return false;
    }
    const auto& told = eventAs<xcb_configure_notify_event_t>(event);
    x = told.x + told.border_width;
    y = told.y + told.border_width;
    width = told.width;
    height = told.height;
    return true;
}

FactsRequest::FactsRequest(const Connection& connection, xcb_window_t window)
    : window_(window)
    , geometry_(xcb_get_geometry(connection.get(), window))
    , origin_(xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0)) {
    const auto& atoms = connection.atoms();
    const auto ask = [&](Property property, xcb_atom_t atom, xcb_atom_t atomType,
                         std::uint32_t maximumWords = fewWords) {
        properties_[property] = requestProperty(connection, window, atom, atomType, maximumWords);
    };
    ask(frameExtents, atoms.netFrameExtents, XCB_ATOM_CARDINAL);
    ask(gtkFrameExtents, atoms.gtkFrameExtents, XCB_ATOM_CARDINAL);
    ask(netState, atoms.netWmState, XCB_ATOM_ATOM);
    ask(icccmState, atoms.wmState, atoms.wmState);
    ask(type, atoms.netWmWindowType, XCB_ATOM_ATOM);
    ask(desktop, atoms.netWmDesktop, XCB_ATOM_CARDINAL);
    properties_[normalHints] = xcb_icccm_get_wm_normal_hints(connection.get(), window);
    ask(transientFor, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW);
    ask(pid, atoms.netWmPid, XCB_ATOM_CARDINAL);
    ask(leader, atoms.wmClientLeader, XCB_ATOM_WINDOW);
    ask(className, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING);
    ask(netName, atoms.netWmName, atoms.utf8String, longestTitle);
    ask(name, XCB_ATOM_WM_NAME, XCB_ATOM_ANY, longestTitle);
    if (!connection.knowsProcesses()) {
        return;
    }
    const xcb_res_client_id_spec_t spec{.client = window, .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    clientIds_ = xcb_res_query_client_ids(connection.get(), 1, &spec);
}

std::optional<WindowFacts> FactsRequest::receive(Connection& connection, Deadline deadline) const {
    const auto geometry = connection.await<xcb_get_geometry_reply_t>(geometry_, deadline);
    const auto origin = connection.await<xcb_translate_coordinates_reply_t>(origin_, deadline);
    std::array<Reply<xcb_get_property_reply_t>, count> properties;
    std::ranges::transform(properties_, properties.begin(), [&](xcb_get_property_cookie_t cookie) {
        return connection.await<xcb_get_property_reply_t>(cookie, deadline);
    });
    const auto clientIds =
        clientIds_ ? connection.await<xcb_res_query_client_ids_reply_t>(*clientIds_, deadline) : nullptr;
    const bool isComplete =
        std::ranges::all_of(properties, [](const auto& reply) { return reply != nullptr; });
    if (!geometry || !origin || !isComplete) {
        return std::nullopt;
    }

    const auto values = [&](Property property) { return words(properties[property].get()); };
    const auto first = [&](Property property) -> std::uint32_t {
        const auto found = values(property);
        return found.empty() ? 0 : found[0];
    };
    const auto states = values(netState);
    const auto has = [&](xcb_atom_t state) { return std::ranges::find(states, state) != states.end(); };
    const auto& atoms = connection.atoms();

    WindowFacts facts{
        .sequence = geometry_.sequence,
        .x = origin->dst_x,
        .y = origin->dst_y,
        .width = geometry->width,
        .height = geometry->height,
        .decoration = insets(values(frameExtents)),
        .shadow = insets(values(gtkFrameExtents)),
        .isManaged = !values(icccmState).empty(),
        .isFullscreen = has(atoms.netWmStateFullscreen),
        .isMaximized = has(atoms.netWmStateMaximizedHorz) || has(atoms.netWmStateMaximizedVert),
        .isHidden = has(atoms.netWmStateHidden) || first(icccmState) == iconicState,
        .isShaded = has(atoms.netWmStateShaded),
        .skipsTaskbar = has(atoms.netWmStateSkipTaskbar),
        .isTransient = first(transientFor) != XCB_WINDOW_NONE,
        .type = knownType(values(type), atoms),
        .desktop = {},
        .pid = localProcess(clientIds.get()),
        .clientLeader = first(leader),
        .className = classOf(text(properties[className].get())),
        .title = text(properties[netName].get()),
    };
    if (properties[normalHints]) {
        xcb_icccm_get_wm_size_hints_from_reply(&facts.sizeHints, properties[normalHints].get());
    }
    if (const auto found = values(desktop); !found.empty() && found[0] != onAllDesktops) {
        facts.desktop = found[0];
    }
    if (facts.pid == 0) {
        facts.pid = static_cast<std::int32_t>(first(pid));
    }
    if (facts.title.empty()) {
        facts.title = text(properties[name].get());
    }
    if (facts.isManaged && values(frameExtents).empty()) {
        measureFrame(connection, window_, facts, deadline);
    }
    return facts;
}

} // namespace karto::x11
