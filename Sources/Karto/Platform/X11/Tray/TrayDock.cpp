#include "Karto/Platform/X11/Tray/TrayDock.h"

#include "Karto/Platform/X11/Tray/ScreenPixels.h"

#include <unistd.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace karto::x11 {

namespace {

constexpr std::uint32_t requestDock = 0;
constexpr std::uint8_t translucentDepth = 32;
constexpr std::uint16_t initialSide = 24;
constexpr std::array<std::uint32_t, 2> embeddedAndMapped{0, 1};
// A tray tells three 16-bit channels of every colour, that of plain symbols first.
constexpr double fullChannel = 0xFFFF;
// Symbols keep away from the edges of places that are larger than the smallest.
constexpr int smallestPlace = 18;
constexpr int margin = 2;

void setText(const Connection& connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
             std::string_view text) {
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
}

std::uint32_t over(std::uint32_t above, std::uint32_t below) {
    const auto rest = 255 - (above >> 24U);
    std::uint32_t result = 0;
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        const auto channel = (above >> shift & 0xFFU) + ((below >> shift & 0xFFU) * rest + 127) / 255;
        result |= std::min(channel, 255U) << shift;
    }
    return result;
}

std::size_t area(int width, int height) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

// The image in the middle of what is there; both no larger than the other's size.
void paintInto(std::span<std::uint32_t> pixels, int width, int height, const Image& image) {
    const int left = (width - image.width) / 2;
    const int top = (height - image.height) / 2;
    for (int row = 0; row < image.height; ++row) {
        for (int column = 0; column < image.width; ++column) {
            auto& pixel = pixels[area(width, top + row) + static_cast<std::size_t>(left + column)];
            pixel = over(image.pixels[area(image.width, row) + static_cast<std::size_t>(column)], pixel);
        }
    }
}

} // namespace

TrayDock::TrayDock(Connection& connection, ShowMenu showMenu)
    : connection_(connection)
    , showMenu_(std::move(showMenu)) {}

TrayDock::~TrayDock() { undock(); }

Registration TrayDock::observePresence(std::function<void()> onChange) {
    return observers_.add(std::move(onChange));
}

void TrayDock::show(const StatusItemContent& content) {
    content_ = content;
    if (!tray_) {
        rootEvents_ = connection_.select(connection_.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        events_ = connection_.observe([this](const xcb_generic_event_t& event) { handle(event); });
        tray_.emplace(connection_, "_NET_SYSTEM_TRAY_S", [this] { follow(); });
        follow();
    } else if (window_ != XCB_WINDOW_NONE) {
        writeLabel();
        paint();
    }
}

void TrayDock::hide() {
    content_ = {};
    tray_.reset();
    events_.reset();
    rootEvents_.reset();
    undock();
}

xcb_window_t TrayDock::trayWindow() const { return tray_ ? tray_->window() : xcb_window_t{XCB_WINDOW_NONE}; }

void TrayDock::follow() {
    undock();
    if (const auto tray = trayWindow(); tray != XCB_WINDOW_NONE) {
        dock(tray);
    }
}

void TrayDock::dock(xcb_window_t tray) {
    createWindow(kindFor(tray));
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = tray;
    request.type = connection_.atoms().netSystemTrayOpcode;
    const std::array<std::uint32_t, 3> words{XCB_CURRENT_TIME, requestDock, window_};
    std::ranges::copy(words, static_cast<std::uint32_t*>(request.data.data32));
    xcb_send_event(
        connection_.get(), 0, tray, XCB_EVENT_MASK_NO_EVENT,
        reinterpret_cast<const char*>(&request)); // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
    connection_.flush();
}

void TrayDock::undock() {
    if (window_ == XCB_WINDOW_NONE) {
        return;
    }
    // A tray that died may have left the window on the screen, or have taken it along.
    xcb_destroy_window(connection_.get(), std::exchange(window_, XCB_WINDOW_NONE));
    if (colormap_ != XCB_COLORMAP_NONE) {
        xcb_free_colormap(connection_.get(), std::exchange(colormap_, XCB_COLORMAP_NONE));
    }
    connection_.flush();
    setEmbedded(false);
}

TrayDock::Kind TrayDock::kindFor(xcb_window_t tray) {
    const auto& screen = connection_.screen();
    const auto reply = connection_.await<xcb_get_property_reply_t>(
        requestProperty(connection_, tray, connection_.atoms().netSystemTrayVisual, XCB_ATOM_VISUALID),
        deadlineFromNow());
    const auto wanted = words(reply.get());
    if (!wanted.empty()) {
        for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0;
             xcb_depth_next(&depths)) {
            const std::span visuals(xcb_depth_visuals(depths.data),
                                    static_cast<std::size_t>(xcb_depth_visuals_length(depths.data)));
            if (std::ranges::find(visuals, wanted.front(), &xcb_visualtype_t::visual_id) != visuals.end()) {
                return {.visual = wanted.front(),
                        .depth = depths.data->depth,
                        .isTranslucent = depths.data->depth == translucentDepth};
            }
        }
    }
    return {.visual = screen.root_visual, .depth = screen.root_depth, .isTranslucent = false};
}

void TrayDock::createWindow(const Kind& kind) {
    const auto& atoms = connection_.atoms();
    kind_ = kind;
    width_ = height_ = initialSide;
    window_ = xcb_generate_id(connection_.get());
    constexpr std::uint32_t events =
        XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_BUTTON_PRESS;
    if (kind.visual == connection_.screen().root_visual) {
        const std::array<std::uint32_t, 2> values{XCB_BACK_PIXMAP_PARENT_RELATIVE, events};
        xcb_create_window(connection_.get(), kind.depth, window_, connection_.root(), 0, 0, initialSide,
                          initialSide, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, kind.visual,
                          XCB_CW_BACK_PIXMAP | XCB_CW_EVENT_MASK, values.data());
    } else {
        colormap_ = xcb_generate_id(connection_.get());
        xcb_create_colormap(connection_.get(), XCB_COLORMAP_ALLOC_NONE, colormap_, connection_.root(),
                            kind.visual);
        const std::array<std::uint32_t, 4> values{0, 0, events, colormap_};
        xcb_create_window(connection_.get(), kind.depth, window_, connection_.root(), 0, 0, initialSide,
                          initialSide, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, kind.visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                          values.data());
    }
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_, atoms.xembedInfo, atoms.xembedInfo,
                        32, embeddedAndMapped.size(), embeddedAndMapped.data());
    const auto process = static_cast<std::uint32_t>(getpid());
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_, atoms.netWmPid, XCB_ATOM_CARDINAL,
                        32, 1, &process);
    // Trays of one toolkit ask nothing else for the size of a place.
    xcb_size_hints_t hints{};
    xcb_icccm_size_hints_set_min_size(&hints, initialSide, initialSide);
    xcb_icccm_set_wm_normal_hints(connection_.get(), window_, &hints);
    setText(connection_, window_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, std::string_view("karto\0Karto\0", 12));
    writeLabel();
}

void TrayDock::writeLabel() {
    const auto& atoms = connection_.atoms();
    setText(connection_, window_, atoms.netWmName, atoms.utf8String, content_.face.accessibleLabel);
    connection_.flush();
}

void TrayDock::handle(const xcb_generic_event_t& event) {
    switch (eventCode(event)) {
    case XCB_REPARENT_NOTIFY:
        if (const auto& news = eventAs<xcb_reparent_notify_event_t>(event);
            news.window == window_ && news.parent != connection_.root()) {
            setEmbedded(true);
        } else if (news.window == window_) {
            undock();
        }
        break;
    case XCB_CLIENT_MESSAGE:
        if (window_ == XCB_WINDOW_NONE && isInvitation(eventAs<xcb_client_message_event_t>(event))) {
            follow();
        }
        break;
    case XCB_DESTROY_NOTIFY:
        if (eventAs<xcb_destroy_notify_event_t>(event).window == window_) {
            undock();
        }
        break;
    case XCB_CONFIGURE_NOTIFY:
        if (const auto& news = eventAs<xcb_configure_notify_event_t>(event); news.window == window_) {
            width_ = news.width;
            height_ = news.height;
            paint();
        }
        break;
    case XCB_EXPOSE:
        if (const auto& news = eventAs<xcb_expose_event_t>(event);
            news.window == window_ && news.count == 0) {
            paint();
        }
        break;
    case XCB_BUTTON_PRESS:
        if (const auto& press = eventAs<xcb_button_press_event_t>(event); press.event == window_) {
            pressed(press);
        }
        break;
    default: break;
    }
}

// A tray that has thrown its icons out, as some do when displays change, and takes them again.
bool TrayDock::isInvitation(const xcb_client_message_event_t& message) const {
    return message.type == connection_.atoms().manager && tray_ &&
           message.data.data32[1] == tray_->selection();
}

void TrayDock::pressed(const xcb_button_press_event_t& press) {
    if (press.detail != XCB_BUTTON_INDEX_1 && press.detail != XCB_BUTTON_INDEX_3) {
        return;
    }
    // Until the button is up the pointer belongs to this window; the menu needs it.
    xcb_ungrab_pointer(connection_.get(), XCB_CURRENT_TIME);
    connection_.flush();
    showMenu_(content_.makeMenu(), {.x = press.root_x - press.event_x,
                                    .y = press.root_y - press.event_y,
                                    .width = width_,
                                    .height = height_});
}

void TrayDock::setEmbedded(bool isEmbedded) {
    if (isEmbedded != std::exchange(isEmbedded_, isEmbedded)) {
        observers_.notify();
    }
}

void TrayDock::paint() {
    const int place = std::min(width_, height_);
    const int side = place > smallestPlace ? place - 2 * margin : place;
    if (!isEmbedded_ || side <= 0) {
        return;
    }
    std::vector<std::uint32_t> pixels;
    RGBColor ink;
    if (kind_.isTranslucent) {
        pixels.assign(area(width_, height_), 0);
        const auto told = trayInk();
        ink = told ? *told : inkOn(readPixels(connection_, trayWindow(), {.width = 1, .height = height_}));
    } else {
        xcb_clear_area(connection_.get(), 0, window_, 0, 0, 0, 0);
        pixels = readPixels(connection_, window_, {.width = width_, .height = height_});
        if (pixels.empty()) {
            return;
        }
        ink = inkOn(pixels);
    }
    paintInto(pixels, width_, height_,
              content_.drawIcon({.side = side, .ink = ink, .hasUpdateMark = content_.face.hasUpdateMark}));
    const auto bytes = std::as_bytes(std::span(pixels));
    const xcb_gcontext_t context = xcb_generate_id(connection_.get());
    xcb_create_gc(connection_.get(), context, window_, 0, nullptr);
    xcb_put_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, window_, context,
                  static_cast<std::uint16_t>(width_), static_cast<std::uint16_t>(height_), 0, 0, 0,
                  kind_.depth, static_cast<std::uint32_t>(bytes.size()),
                  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
                  reinterpret_cast<const std::uint8_t*>(bytes.data()));
    xcb_free_gc(connection_.get(), context);
    connection_.flush();
}

std::optional<RGBColor> TrayDock::trayInk() {
    const auto reply = connection_.await<xcb_get_property_reply_t>(
        requestProperty(connection_, trayWindow(), connection_.atoms().netSystemTrayColors,
                        XCB_ATOM_CARDINAL),
        deadlineFromNow());
    const auto channels = words(reply.get());
    if (channels.size() < 3) {
        return std::nullopt;
    }
    return RGBColor{.red = channels[0] / fullChannel,
                    .green = channels[1] / fullChannel,
                    .blue = channels[2] / fullChannel};
}

} // namespace karto::x11
