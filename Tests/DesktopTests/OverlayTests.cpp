#include "DesktopTest.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <fstream>

namespace karto::desktop {

namespace {

// Hyper without Shift, which is thus an extra modifier.
const std::string threeModifiers = "\n[hotkeys]\nmodifiers = [\"control\", \"option\", \"command\"]\n";

class OverlayTest : public DesktopTest {
protected:
    explicit OverlayTest(const std::vector<Output>& outputs = studioAndTower)
        : DesktopTest("openbox", outputs) {
        keys.hyper = {"LWIN", "LCTL", "LALT"};
        configure(sampleConfiguration);
    }

    void configure(const std::string& layouts) {
        KartoProcess::writeConfiguration(desktop, layouts + threeModifiers);
    }

    testing::AssertionResult shows(const std::vector<Rect>& frames,
                                   std::chrono::milliseconds timeout = patience) {
        std::vector<Rect> shown;
        const bool fitted = eventually(
            [&] {
                shown = desktop.x().unmanagedFrames("karto");
                return shown.size() == frames.size() && std::ranges::equal(shown, frames, fits);
            },
            timeout);
        if (fitted) {
            return testing::AssertionSuccess();
        }
        auto failure = testing::AssertionFailure() << "the overlay shows on";
        for (const Rect& frame : shown) {
            failure << fmt::format(" ({}, {}, {}, {})", frame.x, frame.y, frame.width, frame.height);
        }
        return failure;
    }

    // Changes of the desktop reach the program in their own time, and hide what it shows: tried until it
    // fits.
    testing::AssertionResult showsAfterChange(const std::vector<Rect>& frames, const std::string& picture) {
        auto result = testing::AssertionFailure();
        eventually([&] {
            keys.holdHyper();
            result = shows(frames, 1s);
            if (result) {
                takePicture(picture);
            }
            keys.releaseHyper();
            return bool(result);
        });
        const auto gone = shows({});
        return result ? gone : result;
    }

    ::testing::AssertionResult showsWhileHeld(const std::vector<Rect>& frames, const std::string& picture) {
        keys.holdHyper();
        auto result = shows(frames);
        takePicture(picture);
        keys.releaseHyper();
        const auto gone = shows({});
        return result ? gone : result;
    }

    const std::vector<Rect> everywhere{zone::studio, zone::tower};
};

struct Look {
    std::string scale;
    bool isComposited = false;
};

class OverlayLookTest : public OverlayTest, public testing::WithParamInterface<Look> {};

const std::string busy = R"([profile]
name = "Busy"

[overlay]
numberSize = 240

[[display]]
name = "Studio"
orientation = "landscape"
split = { axis = "vertical", at = 0.97, first = { split = { axis = "horizontal", at = 0.3333, first = {}, second = {} } }, second = { split = { axis = "horizontal", at = 0.95, first = {}, second = {} } } }
)";

} // namespace

// Pictures of it, at every scale, with and without a compositor.
TEST_P(OverlayLookTest, showsOnEveryDisplayWhileHyperIsHeld) {
    std::unique_ptr<ChildProcess> compositor;
    if (GetParam().isComposited) {
        compositor = std::make_unique<ChildProcess>(
            desktop.start({"picom", "--backend", "xrender", "--config", "/dev/null"}));
    }
    const Application window = Application::terminal(desktop, "terminal");
    launchKarto({{"QT_SCALE_FACTOR", GetParam().scale}});
    karto->waitForBanner();
    EXPECT_TRUE(showsWhileHeld(everywhere, "zones"));
    EXPECT_EQ(desktop.x().activeWindow(), window.window());
    configure(busy);
    EXPECT_TRUE(karto->log().next("profile \"Busy\""));
    EXPECT_TRUE(showsWhileHeld(everywhere, "tiny zones, large numbers, and a message"));
}

INSTANTIATE_TEST_SUITE_P(
    Looks, OverlayLookTest,
    testing::Values(Look{.scale = "1", .isComposited = true}, Look{.scale = "1", .isComposited = false},
                    Look{.scale = "1.5", .isComposited = true}, Look{.scale = "1.5", .isComposited = false},
                    Look{.scale = "2", .isComposited = true}, Look{.scale = "2", .isComposited = false}),
    [](const testing::TestParamInfo<Look>& look) {
        std::string name = "scale" + look.param.scale;
        std::ranges::replace(name, '.', '_');
        return name + (look.param.isComposited ? "composited" : "plain");
    });

TEST_F(OverlayTest, goesWithAnyChangeOfTheModifiersAndComesBack) {
    startKarto();
    keys.holdHyper();
    EXPECT_TRUE(shows(everywhere));
    keys.press("LFSH");
    EXPECT_TRUE(shows({}));
    keys.release("LFSH");
    EXPECT_TRUE(shows(everywhere));
    keys.release("LCTL");
    EXPECT_TRUE(shows({}));
    keys.press("LCTL");
    EXPECT_TRUE(shows(everywhere));
    keys.tap("AE01");
    EXPECT_TRUE(karto->log().next("command moveToZone(1): no focused window"));
    EXPECT_TRUE(shows(everywhere));
    keys.releaseHyper();
    EXPECT_TRUE(shows({}));
}

TEST_F(OverlayTest, doesNotStickWhenTheReleaseHappensOutOfItsSight) {
    startKarto();
    keys.holdHyper();
    EXPECT_TRUE(shows(everywhere));
    // Another program has the server for itself.
    xcb_grab_server(desktop.x().connection());
    keys.releaseHyper();
    xcb_ungrab_server(desktop.x().connection());
    EXPECT_TRUE(shows({}));

    // Another program has the keyboard for itself, as a locked screen does.
    keys.holdHyper();
    EXPECT_TRUE(shows(everywhere));
    const auto grab = xcb_grab_keyboard(desktop.x().connection(), 0, desktop.x().root(), XCB_CURRENT_TIME,
                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Reply<xcb_grab_keyboard_reply_t> grabbed(
        xcb_grab_keyboard_reply(desktop.x().connection(), grab, nullptr));
    ASSERT_TRUE(grabbed && grabbed->status == XCB_GRAB_STATUS_SUCCESS);
    keys.releaseHyper();
    EXPECT_TRUE(shows({}));
    xcb_ungrab_keyboard(desktop.x().connection(), XCB_CURRENT_TIME);

    // The keyboard becomes another one.
    keys.holdHyper();
    EXPECT_TRUE(shows(everywhere));
    desktop.run({"setxkbmap", "fr"});
    keys.releaseHyper();
    EXPECT_TRUE(shows({}));
}

TEST_F(OverlayTest, followsTheDisplaysWhileHiddenArmedAndShowing) {
    if (!desktop.hasOutputs()) {
        GTEST_SKIP() << "the outputs of this server are fixed";
    }
    startKarto();
    EXPECT_TRUE(showsWhileHeld(everywhere, "both displays"));
    desktop.setConnected("Tower", false);
    EXPECT_TRUE(showsAfterChange({zone::studio}, "one display"));

    keys.holdHyper();
    EXPECT_TRUE(shows({zone::studio}));
    desktop.setConnected("Tower", true);
    EXPECT_TRUE(shows({}));
    keys.releaseHyper();
    EXPECT_TRUE(showsAfterChange(everywhere, "connected again"));

    keys.holdHyper();
    desktop.resize("Studio", {.width = 800, .height = 1100});
    EXPECT_TRUE(shows({}));
    keys.releaseHyper();
    // The panel keeps to the lower edge of the whole desktop, which is now below that of the display.
    const std::vector<Rect> turned{{.x = 0, .y = 0, .width = 800, .height = 1100}, studioAndTower[1].area};
    EXPECT_TRUE(showsAfterChange(turned, "turned, so that no layout fits"));

    desktop.rename("Tower", "Steeple");
    EXPECT_TRUE(showsAfterChange(turned, "renamed, so that no layout fits"));
}

TEST_F(OverlayTest, saysWhyADisplayHasNoZones) {
    configure("[profile]\nname = \"Half\"\n[[display]]\nname = \"Studio\"\norientation = \"landscape\"\n");
    startKarto();
    EXPECT_TRUE(showsWhileHeld(everywhere, "no layout for Tower"));
    configure("[profile\n");
    EXPECT_TRUE(karto->log().next("config reload: "));
    EXPECT_TRUE(showsWhileHeld(everywhere, "a broken configuration"));
    std::filesystem::remove(KartoProcess::configurationPath(desktop));
    keys.hyper = {"LFSH", "LWIN", "LCTL", "LALT"};
    startKarto();
    // A first run opens the settings.
    closeOwnWindow();
    EXPECT_TRUE(showsWhileHeld(everywhere, "no configuration"));
}

TEST_F(OverlayTest, followsACompositorThatComesAndGoes) {
    xcb_connection_t* const server = desktop.x().connection();
    // In the upper border of zone 1.
    const auto isWhite = [&] {
        const Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(
            server, xcb_get_image(server, XCB_IMAGE_FORMAT_Z_PIXMAP, desktop.x().root(), 300, 0, 1, 1, ~0U),
            nullptr));
        return image && (*reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get())) &
                         0xFFFFFF) == 0xFFFFFF;
    };
    startKarto();
    keys.holdHyper();
    EXPECT_TRUE(eventually(isWhite));
    takePicture("before");
    {
        const ChildProcess compositor =
            desktop.start({"picom", "--backend", "xrender", "--config", "/dev/null"});
        EXPECT_TRUE(eventually([&] { return !isWhite(); }));
        EXPECT_TRUE(shows(everywhere));
        takePicture("meanwhile");
    }
    EXPECT_TRUE(eventually(isWhite));
    takePicture("after");
    keys.releaseHyper();
    EXPECT_TRUE(shows({}));
}

} // namespace karto::desktop
