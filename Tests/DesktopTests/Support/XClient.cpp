#include "Support/XClient.h"

#include "Support/Waiting.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace karto::desktop {

namespace {

// Left, right, top and bottom; nothing when the property is absent.
std::array<double, 4> edges(const std::vector<std::uint32_t>& items) {
    if (items.size() < 4) {
        return {};
    }
    return {double(items[0]), double(items[1]), double(items[2]), double(items[3])};
}

constexpr std::uint32_t fromPager = 2;
constexpr std::uint32_t addState = 1;

} // namespace

XClient::XClient(const std::string& display)
    : connection_(xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection()) != 0) {
        throw std::runtime_error("no X server at " + display);
    }
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection())).data;
}

xcb_atom_t XClient::atom(const std::string& name) const {
    const auto cookie = xcb_intern_atom(connection(), 0, std::uint16_t(name.size()), name.c_str());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection(), cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::vector<std::uint32_t> XClient::property(xcb_window_t window, const std::string& name) const {
    const auto cookie = xcb_get_property(connection(), 0, window, atom(name), XCB_ATOM_ANY, 0, 4096);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection(), cookie, nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* items = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {items, items + reply->value_len};
}

void XClient::setProperty(xcb_window_t window, const std::string& name, xcb_atom_t type,
                          const std::vector<std::uint32_t>& items) const {
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, atom(name), type, 32,
                        std::uint32_t(items.size()), items.data());
}

void XClient::setText(xcb_window_t window, const std::string& name, const std::string& text) const {
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, atom(name), XCB_ATOM_STRING, 8,
                        std::uint32_t(text.size()), text.data());
}

std::optional<Rect> XClient::clientArea(xcb_window_t window) const {
    const auto sizeCookie = xcb_get_geometry(connection(), window);
    const auto placeCookie = xcb_translate_coordinates(connection(), window, root(), 0, 0);
    const Reply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(connection(), sizeCookie, nullptr));
    const Reply<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(connection(), placeCookie, nullptr));
    if (!size || !place) {
        return {};
    }
    return Rect{.x = double(place->dst_x),
                .y = double(place->dst_y),
                .width = double(size->width),
                .height = double(size->height)};
}

xcb_window_t XClient::outermost(xcb_window_t window) const {
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection(), xcb_query_tree(connection(), window), nullptr));
    return !tree || tree->parent == root() ? window : outermost(tree->parent);
}

std::optional<Rect> XClient::frameOf(xcb_window_t window) const {
    const auto told = property(window, "_NET_FRAME_EXTENTS");
    const std::optional<Rect> area = clientArea(told.empty() ? outermost(window) : window);
    if (!area) {
        return {};
    }
    const auto border = edges(told);
    const auto shadow = edges(property(window, "_GTK_FRAME_EXTENTS"));
    const double left = border[0] - shadow[0];
    const double right = border[1] - shadow[1];
    const double top = border[2] - shadow[2];
    const double bottom = border[3] - shadow[3];
    return Rect{.x = area->x - left,
                .y = area->y - top,
                .width = area->width + left + right,
                .height = area->height + top + bottom};
}

bool XClient::isNamed(xcb_window_t window, const std::string& name) const {
    const auto cookie = xcb_get_property(connection(), 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection(), cookie, nullptr));
    // The instance ends at the first zero byte.
    return reply && reply->value_len > 0 &&
           name == static_cast<const char*>(xcb_get_property_value(reply.get()));
}

std::optional<xcb_window_t> XClient::clientNamed(const std::string& name) const {
    const auto clients = clientsNamed(name);
    return clients.empty() ? std::nullopt : std::optional(clients.front());
}

std::vector<xcb_window_t> XClient::clientsNamed(const std::string& name) const {
    auto clients = property(root(), "_NET_CLIENT_LIST");
    std::erase_if(clients, [&](xcb_window_t window) { return !isNamed(window, name); });
    return clients;
}

std::vector<Rect> XClient::unmanagedFrames(const std::string& name) const {
    std::vector<Rect> frames;
    for (const xcb_window_t window : childrenOf(root())) {
        const auto cookie = xcb_get_window_attributes(connection(), window);
        const Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(connection(), cookie, nullptr));
        const bool isShown = attributes && attributes->override_redirect != 0 &&
                             attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                             attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
        const auto area = isShown && isNamed(window, name) ? clientArea(window) : std::nullopt;
        if (area && area->maxX() > 0) {
            frames.push_back(*area);
        }
    }
    std::ranges::sort(frames, {}, &Rect::x);
    return frames;
}

std::vector<Rect> XClient::embeddedFrames(const std::string& name) const {
    std::vector<Rect> frames;
    for (const auto window : embedded(name)) {
        if (const auto area = clientArea(window)) {
            frames.push_back(*area);
        }
    }
    return frames;
}

void XClient::inviteAnew(const std::string& name, const std::string& traySelection) const {
    for (const auto window : embedded(name)) {
        xcb_reparent_window(connection(), window, root(), 0, 0);
    }
    tellRoot(XCB_EVENT_MASK_STRUCTURE_NOTIFY, root(), "MANAGER", {XCB_CURRENT_TIME, atom(traySelection)});
}

std::vector<xcb_window_t> XClient::embedded(const std::string& name) const {
    std::vector<xcb_window_t> found;
    auto windows = childrenOf(root());
    for (std::size_t i = 0, outer = windows.size(); i < windows.size(); ++i) {
        const auto cookie = xcb_get_window_attributes(connection(), windows[i]);
        const Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(connection(), cookie, nullptr));
        const bool isShown = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        if (i >= outer && isShown && isNamed(windows[i], name)) {
            found.push_back(windows[i]);
        }
        std::ranges::copy(childrenOf(windows[i]), std::back_inserter(windows));
    }
    return found;
}

std::vector<xcb_window_t> XClient::childrenOf(xcb_window_t window) const {
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection(), xcb_query_tree(connection(), window), nullptr));
    if (!tree) {
        return {};
    }
    const std::span children(xcb_query_tree_children(tree.get()),
                             std::size_t(xcb_query_tree_children_length(tree.get())));
    return {children.begin(), children.end()};
}

std::optional<xcb_window_t> XClient::clientOf(pid_t pid) const {
    const auto clients = property(root(), "_NET_CLIENT_LIST");
    const auto found = std::ranges::find_if(clients, [&](xcb_window_t window) {
        return property(window, "_NET_WM_PID") == std::vector{std::uint32_t(pid)};
    });
    return found == clients.end() ? std::nullopt : std::optional(*found);
}

xcb_window_t XClient::activeWindow() const {
    const auto items = property(root(), "_NET_ACTIVE_WINDOW");
    return items.empty() ? xcb_window_t{XCB_WINDOW_NONE} : items.front();
}

bool XClient::hasState(xcb_window_t window, const std::string& state) const {
    const auto states = property(window, "_NET_WM_STATE");
    return std::ranges::find(states, atom(state)) != states.end();
}

void XClient::settle() const {
    const Reply<xcb_get_input_focus_reply_t> answer(
        xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
}

std::optional<Rect> XClient::outermostAt(Point point) const {
    const auto cookie =
        xcb_translate_coordinates(connection(), root(), root(), std::int16_t(point.x), std::int16_t(point.y));
    const Reply<xcb_translate_coordinates_reply_t> hit(
        xcb_translate_coordinates_reply(connection(), cookie, nullptr));
    return hit && hit->child != XCB_WINDOW_NONE ? clientArea(hit->child) : std::nullopt;
}

std::uint32_t XClient::colorAt(int x, int y) const {
    const auto cookie = xcb_get_image(connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, root(), std::int16_t(x),
                                      std::int16_t(y), 1, 1, ~0U);
    const Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(connection(), cookie, nullptr));
    std::uint32_t color = 0;
    std::memcpy(&color, xcb_get_image_data(image.get()), sizeof color);
    return color & 0xFFFFFF;
}

void XClient::raise(xcb_window_t window) const { restack(window, XCB_STACK_MODE_ABOVE); }

void XClient::lower(xcb_window_t window) const { restack(window, XCB_STACK_MODE_BELOW); }

void XClient::restack(xcb_window_t window, std::uint32_t mode) const {
    xcb_configure_window(connection(), window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    flush();
}

void XClient::askManager(xcb_window_t window, const std::string& message,
                         const std::array<std::uint32_t, 5>& items) const {
    tellRoot(XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, window, message,
             items);
}

void XClient::tellRoot(std::uint32_t eventMask, xcb_window_t window, const std::string& message,
                       const std::array<std::uint32_t, 5>& items) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(message);
    std::ranges::copy(items, std::begin(event.data.data32));
    // xcb reads all 32 bytes of an event.
    std::array<char, 32> bytes{};
    static_assert(sizeof event == sizeof bytes);
    std::copy_n(reinterpret_cast<const char*>(&event), sizeof event, bytes.begin());
    xcb_send_event(connection(), 0, root(), eventMask, bytes.data());
    flush();
}

void XClient::activate(xcb_window_t window) const {
    askManager(window, "_NET_ACTIVE_WINDOW", {fromPager, XCB_CURRENT_TIME, 0, 0, 0});
}

void XClient::place(xcb_window_t window, const Rect& frame) const {
    const std::optional<Rect> area = clientArea(window);
    const std::optional<Rect> now = frameOf(window);
    if (!area || !now) {
        return;
    }
    // The manager reckons from its own frame, which an invisible shadow lies inside of.
    const auto shadow = edges(property(window, "_GTK_FRAME_EXTENTS"));
    const double width = frame.width - (now->width - area->width);
    const double height = frame.height - (now->height - area->height);
    constexpr std::uint32_t northWest = 1;
    constexpr std::uint32_t everyField = 0xFU << 8U;
    askManager(window, "_NET_MOVERESIZE_WINDOW",
               {northWest | everyField | fromPager << 12U, std::uint32_t(std::int32_t(frame.x - shadow[0])),
                std::uint32_t(std::int32_t(frame.y - shadow[2])), std::uint32_t(width),
                std::uint32_t(height)});
}

void XClient::close(xcb_window_t window) const {
    askManager(window, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, fromPager, 0, 0, 0});
}

void XClient::maximize(xcb_window_t window) const {
    askManager(
        window, "_NET_WM_STATE",
        {addState, atom("_NET_WM_STATE_MAXIMIZED_HORZ"), atom("_NET_WM_STATE_MAXIMIZED_VERT"), fromPager, 0});
}

void XClient::makeFullScreen(xcb_window_t window) const {
    askManager(window, "_NET_WM_STATE", {addState, atom("_NET_WM_STATE_FULLSCREEN"), 0, fromPager, 0});
}

bool XClient::managerAnswers(std::chrono::milliseconds timeout) const {
    const auto supported = property(root(), "_NET_SUPPORTED");
    if (std::ranges::find(supported, atom("_NET_REQUEST_FRAME_EXTENTS")) == supported.end()) {
        return !supported.empty();
    }
    const xcb_window_t window = xcb_generate_id(connection());
    xcb_create_window(connection(), XCB_COPY_FROM_PARENT, window, root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    askManager(window, "_NET_REQUEST_FRAME_EXTENTS", {});
    const bool answered =
        eventually([&] { return !property(window, "_NET_FRAME_EXTENTS").empty(); }, timeout);
    xcb_destroy_window(connection(), window);
    flush();
    return answered;
}

} // namespace karto::desktop
