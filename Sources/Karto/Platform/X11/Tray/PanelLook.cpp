#include "Karto/Platform/X11/Tray/PanelLook.h"

#include "Karto/Platform/X11/Tray/ScreenPixels.h"

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace karto::x11 {

namespace {

// Past the border of a panel, and short of what stands on it.
constexpr int beyondBorder = 3;

// Panels paint themselves anew some time after a theme has changed.
constexpr std::chrono::milliseconds repaintTime{1000};

// A line of pixels along the panel.
PixelRect lineOf(const PixelRect& panel, int row) {
    return {.x = panel.x, .y = panel.y + row, .width = panel.width, .height = 1};
}

} // namespace

PanelLook::PanelLook(Connection& connection, Scheduler& scheduler)
    : connection_(connection)
    , scheduler_(scheduler) {}

RGBColor PanelLook::ink() {
    const auto panel = largestPanel();
    const int depth = std::min(beyondBorder, panel.height - 1);
    auto pixels = readPixels(connection_, connection_.root(), lineOf(panel, depth));
    const auto more = readPixels(connection_, connection_.root(), lineOf(panel, panel.height - 1 - depth));
    pixels.insert(pixels.end(), more.begin(), more.end());
    return inkOn(pixels);
}

PixelRect PanelLook::largestPanel() {
    const auto& atoms = connection_.atoms();
    const auto deadline = deadlineFromNow();
    const int screenWidth = connection_.screen().width_in_pixels;
    const int screenHeight = connection_.screen().height_in_pixels;
    PixelRect largest{.width = screenWidth, .height = 1};
    const auto clients = connection_.await<xcb_get_property_reply_t>(
        requestProperty(connection_, connection_.root(), atoms.netClientList, XCB_ATOM_WINDOW, mostWindows),
        deadline);

    struct Request {
        xcb_get_property_cookie_t types;
        xcb_get_geometry_cookie_t geometry;
        xcb_translate_coordinates_cookie_t origin;
    };

    std::vector<Request> requests;
    for (const auto window : words(clients.get())) {
        requests.push_back(
            {.types = requestProperty(connection_, window, atoms.netWmWindowType, XCB_ATOM_ATOM),
             .geometry = xcb_get_geometry(connection_.get(), window),
             .origin = xcb_translate_coordinates(connection_.get(), window, connection_.root(), 0, 0)});
    }
    for (const auto& request : requests) {
        const auto types = connection_.await<xcb_get_property_reply_t>(request.types, deadline);
        const auto geometry = connection_.await<xcb_get_geometry_reply_t>(request.geometry, deadline);
        const auto origin = connection_.await<xcb_translate_coordinates_reply_t>(request.origin, deadline);
        const auto named = words(types.get());
        if (!geometry || !origin || std::ranges::find(named, atoms.netWmWindowTypeDock) == named.end()) {
            continue;
        }
        const int left = std::max<int>(origin->dst_x, 0);
        const int top = std::max<int>(origin->dst_y, 0);
        const PixelRect visible{.x = left,
                                .y = top,
                                .width = std::min<int>(origin->dst_x + geometry->width, screenWidth) - left,
                                .height =
                                    std::min<int>(origin->dst_y + geometry->height, screenHeight) - top};
        if (visible.width > 0 && visible.height > 0 &&
            visible.width * visible.height > largest.width * largest.height) {
            largest = visible;
        }
    }
    return largest;
}

Registration PanelLook::observeChanges(std::function<void()> onChange) {
    if (!settings_) {
        settings_.emplace(connection_, "_XSETTINGS_S", [this] { followSettings(); });
        followSettings();
        settingsEvents_ = connection_.observe([this](const xcb_generic_event_t& event) {
            if (eventCode(event) == XCB_PROPERTY_NOTIFY &&
                eventAs<xcb_property_notify_event_t>(event).atom == connection_.atoms().xsettingsSettings) {
                settingsChanged();
            }
        });
    }
    return observers_.add(std::move(onChange));
}

void PanelLook::followSettings() {
    settingsSelection_.reset();
    const auto window = settings_ ? settings_->window() : xcb_window_t{XCB_WINDOW_NONE};
    if (window != XCB_WINDOW_NONE) {
        settingsSelection_ = connection_.select(window, XCB_EVENT_MASK_PROPERTY_CHANGE);
        connection_.flush();
    }
    settingsChanged();
}

void PanelLook::settingsChanged() {
    soon_ = scheduler_.after(repaintTime, [this] {
        soon_.reset();
        observers_.notify();
    });
}

} // namespace karto::x11
