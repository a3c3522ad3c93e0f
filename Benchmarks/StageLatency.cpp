// How long the overlay takes to appear: from the call that shows it on every display until the server has
// carried out all of it. StageLatency DISPLAYS [composited]

#include "Karto/Platform/DesktopTheme.h"
#include "Karto/Platform/X11/Extensions.h"
#include "Karto/Platform/X11/X11OverlayStage.h"

#include <fmt/format.h>
#include <xcb/composite.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace {

using namespace karto;
using Clock = std::chrono::steady_clock;

constexpr int width = 3840;
constexpr int height = 2160;
constexpr int displaysInRow = 3;
constexpr int rounds = 41;

class PlainTheme final : public DesktopTheme {
public:
    [[nodiscard]] double scale() const override { return 2; }

    [[nodiscard]] RGBColor accent() const override { return {}; }

    Registration observeChanges(std::function<void()> /*onChange*/) override { return {}; }
};

// Nothing that is put off belongs to what is measured.
class NeverScheduler final : public Scheduler {
public:
    Registration after(std::chrono::milliseconds /*delay*/, std::function<void()> /*task*/) override {
        return {};
    }
};

// What a compositor does to the server's work: every window is kept in memory of its own. It paints nothing.
void standInForCompositor(x11::Connection& connection) {
    const auto version = xcb_composite_query_version(connection.get(), 0, 4);
    connection.await<xcb_composite_query_version_reply_t>(version, x11::deadlineFromNow());
    xcb_composite_redirect_subwindows(connection.get(), connection.root(), XCB_COMPOSITE_REDIRECT_MANUAL);
    const std::string_view name = "_NET_WM_CM_S0";
    const auto atom = connection.await<xcb_intern_atom_reply_t>(
        xcb_intern_atom(connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
        x11::deadlineFromNow());
    const xcb_window_t owner = xcb_generate_id(connection.get());
    xcb_create_window(connection.get(), 0, owner, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(connection.get(), owner, atom->atom, XCB_CURRENT_TIME);
    connection.flush();
}

std::shared_ptr<const Image> image(int columns, int rows, std::uint32_t pixel) {
    return std::make_shared<const Image>(Image{
        .width = columns,
        .height = rows,
        .pixels = std::vector(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), pixel)});
}

// Four zones: rounded corners, borders, a number, and an even background where windows are blended.
class Zones {
public:
    explicit Zones(bool isTranslucent)
        : isTranslucent_(isTranslucent) {}

    [[nodiscard]] Picture paint() const {
        Picture picture;
        for (const int x : {0, width / 2}) {
            for (const int y : {0, height / 2}) {
                paintZone(picture, {.x = x, .y = y, .width = width / 2, .height = height / 2});
            }
        }
        return picture;
    }

private:
    static constexpr int corner = 24;
    static constexpr int border = 3;
    static constexpr int numberWidth = 120;
    static constexpr int numberHeight = 160;

    void paintZone(Picture& picture, const PixelRect& zone) const {
        const int right = zone.x + zone.width - corner;
        const int bottom = zone.y + zone.height - corner;
        const int across = zone.width - 2 * corner;
        const int along = zone.height - 2 * corner;
        const auto put = [&](const std::shared_ptr<const Image>& tile, int x, int y, int columns, int rows) {
            picture.tiles.push_back(
                {.image = tile, .area = {.x = x, .y = y, .width = columns, .height = rows}});
        };
        put(corner_, zone.x, zone.y, corner, corner);
        put(corner_, right, zone.y, corner, corner);
        put(corner_, zone.x, bottom, corner, corner);
        put(corner_, right, bottom, corner, corner);
        const int edge = isTranslucent_ ? corner : border;
        put(edge_, zone.x + corner, zone.y, across, edge);
        put(edge_, zone.x + corner, zone.y + zone.height - edge, across, edge);
        put(edge_, zone.x, zone.y + corner, edge, along);
        put(edge_, zone.x + zone.width - edge, zone.y + corner, edge, along);
        if (isTranslucent_) {
            put(middle_, zone.x + corner, zone.y + corner, across, along);
        }
        put(number_, zone.x + zone.width / 2, zone.y + zone.height / 2, numberWidth, numberHeight);
    }

    bool isTranslucent_;
    std::shared_ptr<const Image> corner_ = image(corner, corner, isTranslucent_ ? 0x4D4D4D4D : 0xFFFFFFFF);
    std::shared_ptr<const Image> edge_ = image(corner, corner, isTranslucent_ ? 0x2F010101 : 0xFFFFFFFF);
    std::shared_ptr<const Image> middle_ = image(1, 1, 0x2E000000);
    std::shared_ptr<const Image> number_ = image(numberWidth, numberHeight, 0xBFBFBFBF);
};

class Overlay {
public:
    Overlay(x11::Connection& connection, OverlayStage& stage, int displays)
        : connection_(connection)
        , stage_(stage)
        , zones_(stage.style().isTranslucent) {
        for (int i = 0; i < displays; ++i) {
            windows_.push_back(stage.createWindow({.x = static_cast<double>(i % displaysInRow * width),
                                                   .y = static_cast<double>(i / displaysInRow * height),
                                                   .width = width,
                                                   .height = height}));
        }
    }

    // Milliseconds.
    double show() {
        const auto start = Clock::now();
        for (const auto& window : windows_) {
            window->setPicture(zones_.paint());
            window->orderFront();
        }
        return presentSince(start);
    }

    double hide() {
        const auto start = Clock::now();
        for (const auto& window : windows_) {
            window->orderOut();
        }
        return presentSince(start);
    }

private:
    double presentSince(Clock::time_point start) {
        stage_.present();
        const auto answer = connection_.await<xcb_get_input_focus_reply_t>(
            xcb_get_input_focus(connection_.get()), x11::deadlineFromNow(std::chrono::seconds(10)));
        const std::chrono::duration<double, std::milli> time = Clock::now() - start;
        // The events of all rounds would pile up otherwise.
        connection_.awaitEvents(connection_.eventMark(), Clock::now());
        return time.count();
    }

    x11::Connection& connection_;
    OverlayStage& stage_;
    Zones zones_;
    std::vector<std::unique_ptr<BorderlessWindow>> windows_;
};

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

} // namespace

int main(int count, char** values) {
    const std::span arguments(values, static_cast<std::size_t>(count));
    int displays = 0;
    if (arguments.size() < 2 || std::sscanf(arguments[1], "%d", &displays) != 1) {
        fmt::print(stderr, "StageLatency DISPLAYS [composited]\n");
        return 2;
    }
    const bool isComposited = arguments.size() > 2 && arguments[2] == std::string_view("composited");
    const auto connection = x11::Connection::open();
    const auto compositor = x11::Connection::open();
    if (!connection || !compositor) {
        fmt::print(stderr, "no X server answers on DISPLAY\n");
        return 1;
    }
    if (isComposited) {
        standInForCompositor(**compositor);
    }
    x11::WindowManager manager(**connection);
    PlainTheme theme;
    NeverScheduler scheduler;
    x11::X11OverlayStage stage(**connection, manager, theme, scheduler);
    Overlay overlay(**connection, stage, displays);

    const double first = overlay.show();
    std::vector<double> shown;
    std::vector<double> hidden;
    for (int round = 0; round < rounds; ++round) {
        hidden.push_back(overlay.hide());
        shown.push_back(overlay.show());
    }
    fmt::print("| {} | {} | {:.1f} | {:.1f} | {:.1f} | {:.1f} |\n", displays, isComposited ? "yes" : "no",
               first, median(shown), *std::ranges::max_element(shown), median(hidden));
    return 0;
}
