#pragma once
// The stage of borderless windows in the test's own process, on a private desktop with a window manager. Its
// events and timers run while the test waits for something. The stage and the test have connections of their
// own: what one asks for, the other sees once it has settled.

#include "Support/Application.h"
#include "Support/ManualScheduler.h"
#include "Support/PolledDescriptors.h"

#include "Karto/Platform/DesktopTheme.h"
#include "Karto/Platform/X11/Keyboard/ModifierEvents.h"
#include "Karto/Platform/X11/Server/Extensions.h"
#include "Karto/Platform/X11/Stage/OverlayStage.h"

#include <gtest/gtest.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace karto::desktop {

inline constexpr std::uint32_t red = 0xFFFF0000;
inline constexpr std::uint32_t green = 0xFF00FF00;
// What a probe is filled with.
inline constexpr std::uint32_t slate = 0xFF1D2B36;

inline std::shared_ptr<const Image> even(std::uint32_t pixel) {
    return std::make_shared<const Image>(Image{.width = 1, .height = 1, .pixels = {pixel}});
}

class PlainTheme final : public DesktopTheme {
public:
    [[nodiscard]] double scale() const override { return 1; }

    [[nodiscard]] RGBColor accent() const override { return {}; }

    Registration observeChanges(std::function<void()> /*onChange*/) override { return {}; }
};

class StageTest : public ::testing::Test {
protected:
    explicit StageTest(const std::string& manager = "openbox") {
        desktop.startWindowManager(manager);
        setenv("DISPLAY", desktop.environment().at("DISPLAY").c_str(), 1);
        connection = x11::Connection::open().value();
        windowManager = std::make_unique<x11::WindowManager>(*connection);
        modifierEvents = std::make_unique<x11::ModifierEvents>(*connection);
        stage = std::make_unique<x11::OverlayStage>(*connection, *windowManager, *modifierEvents, theme,
                                                    scheduler);
        connection->attach(descriptors, scheduler, [] {});
    }

    // False when the condition does not come to hold in time.
    template<typename Condition>
    bool reaches(Condition condition, std::chrono::milliseconds timeout = patience) {
        const auto end = std::chrono::steady_clock::now() + timeout;
        while (!condition()) {
            const auto start = std::chrono::steady_clock::now();
            if (start > end) {
                return false;
            }
            descriptors.dispatch(2ms);
            scheduler.advance(
                std::chrono::ceil<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start));
        }
        return true;
    }

    // Returns once the server has carried out what the stage asked for, and told of it.
    void settle() {
        const auto mark = xcb_get_input_focus(connection->get());
        const auto deadline = x11::deadlineFromNow(patience);
        ASSERT_TRUE(connection->await<xcb_get_input_focus_reply_t>(mark, deadline));
    }

    void present() {
        stage->present();
        settle();
    }

    std::unique_ptr<BorderlessWindow> createWindow(const Rect& frame, std::uint32_t pixel) {
        auto window = stage->createWindow(frame);
        const PixelRect whole{.x = 0, .y = 0, .width = int(frame.width) + 1, .height = int(frame.height) + 1};
        window->setPicture({.tiles = {{.image = even(pixel), .area = whole}}});
        return window;
    }

    void startCompositor() {
        compositor =
            std::make_unique<ChildProcess>(desktop.start({"picom", "--backend", "xrender", "--shadow"}));
        require("the compositor", [&] { return reaches([&] { return stage->style().isTranslucent; }); });
    }

    // The pixel that a person sees there.
    [[nodiscard]] std::uint32_t pixelAt(int x, int y) const {
        const Reply<xcb_get_image_reply_t> image(
            xcb_get_image_reply(server(),
                                xcb_get_image(server(), XCB_IMAGE_FORMAT_Z_PIXMAP, desktop.x().root(),
                                              std::int16_t(x), std::int16_t(y), 1, 1, ~0U),
                                nullptr));
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, xcb_get_image_data(image.get()), sizeof pixel);
        return pixel | 0xFF000000;
    }

    ::testing::AssertionResult shows(int x, int y, std::uint32_t pixel) {
        // A compositor works to a measure of its own.
        const auto differs = [](std::uint32_t a, std::uint32_t b) {
            const auto channel = [](std::uint32_t value, unsigned shift) {
                return int(value >> shift & 0xFF);
            };
            return std::ranges::any_of(std::array{0U, 8U, 16U}, [&](unsigned shift) {
                return std::abs(channel(a, shift) - channel(b, shift)) > 1;
            });
        };
        if (reaches([&] { return !differs(pixelAt(x, y), pixel); })) {
            return ::testing::AssertionSuccess();
        }
        return ::testing::AssertionFailure() << std::hex << pixelAt(x, y) << " instead of " << pixel
                                             << std::dec << " at " << x << ", " << y;
    }

    void movePointer(int x, int y) const {
        xcb_test_fake_input(server(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, desktop.x().root(),
                            std::int16_t(x), std::int16_t(y), 0);
        desktop.x().flush();
    }

    void button(std::uint8_t type, std::uint8_t number) const {
        xcb_test_fake_input(server(), type, number, XCB_CURRENT_TIME, desktop.x().root(), 0, 0, 0);
        desktop.x().flush();
    }

    // The child of the root that a click there goes to.
    [[nodiscard]] xcb_window_t windowAt(int x, int y) const {
        movePointer(x, y);
        const Reply<xcb_query_pointer_reply_t> pointer(
            xcb_query_pointer_reply(server(), xcb_query_pointer(server(), desktop.x().root()), nullptr));
        return pointer->child;
    }

    [[nodiscard]] bool isOwn(xcb_window_t window) const {
        return desktop.x().property(window, "_NET_WM_PID") == std::vector{std::uint32_t(getpid())};
    }

    // The child of the root that holds the window.
    [[nodiscard]] xcb_window_t topLevel(xcb_window_t window) const {
        while (true) {
            const Reply<xcb_query_tree_reply_t> tree(
                xcb_query_tree_reply(server(), xcb_query_tree(server(), window), nullptr));
            if (!tree || tree->parent == desktop.x().root()) {
                return window;
            }
            window = tree->parent;
        }
    }

    // A green window that no manager manages, on top of everything at first.
    [[nodiscard]] xcb_window_t mapUnmanaged(const Rect& area) const {
        const xcb_window_t window = xcb_generate_id(server());
        const std::array<std::uint32_t, 3> values{green & 0xFFFFFF, 1, XCB_EVENT_MASK_VISIBILITY_CHANGE};
        xcb_create_window(server(), XCB_COPY_FROM_PARENT, window, desktop.x().root(), std::int16_t(area.x),
                          std::int16_t(area.y), std::uint16_t(area.width), std::uint16_t(area.height), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
        xcb_map_window(server(), window);
        desktop.x().flush();
        return window;
    }

    [[nodiscard]] xcb_connection_t* server() const { return desktop.x().connection(); }

    PrivateDesktop desktop;
    karto::testing::ManualScheduler scheduler;
    karto::testing::PolledDescriptors descriptors;
    PlainTheme theme;
    std::unique_ptr<x11::Connection> connection;
    std::unique_ptr<x11::WindowManager> windowManager;
    std::unique_ptr<x11::ModifierEvents> modifierEvents;
    std::unique_ptr<x11::OverlayStage> stage;
    std::unique_ptr<ChildProcess> compositor;
};

} // namespace karto::desktop
