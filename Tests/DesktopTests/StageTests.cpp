#include "StageTest.h"

#include "DesktopTest.h"
#include "Support/Footprint.h"

#include "Karto/Platform/X11/Windows/Accessibility.h"
#include "Karto/Platform/X11/Windows/ApplicationActivity.h"

#include <malloc.h>

#include <algorithm>
#include <span>
#include <tuple>
#include <utility>

namespace karto::desktop {

namespace {

constexpr Rect studio = zone::studio;

} // namespace

class StageOnManager : public StageTest, public ::testing::WithParamInterface<std::string> {
protected:
    StageOnManager()
        : StageTest(GetParam()) {}
};

TEST_P(StageOnManager, aWindowIsInFrontOfAllOthersOrDirectlyBelowOneAndInNobodysWay) {
    const XClient& x = desktop.x();
    const Application alpha =
        Application::probe(desktop, "plain", "alpha", {.x = 100, .y = 90, .width = 400, .height = 300});
    const auto badge = createWindow({.x = 200, .y = 150, .width = 100, .height = 100}, red);
    badge->orderFront();
    present();
    EXPECT_TRUE(shows(250, 200, red));
    // No shadow.
    EXPECT_TRUE(shows(303, 200, slate));
    EXPECT_TRUE(shows(250, 253, slate));
    badge->orderOut();
    const auto overlay = createWindow(studio, red);
    overlay->orderFront();
    present();
    EXPECT_TRUE(shows(200, 150, red));
    const Application beta =
        Application::probe(desktop, "plain", "beta", {.x = 350, .y = 250, .width = 400, .height = 300});
    for (const bool comesLast : {false, true}) {
        SCOPED_TRACE(comesLast);
        const xcb_window_t menu = mapUnmanaged({.x = 600, .y = 500, .width = 300, .height = 100});
        if (comesLast) {
            EXPECT_TRUE(shows(700, 550, green));
            overlay->orderFront();
            present();
        }
        EXPECT_TRUE(shows(400, 350, red));
        EXPECT_TRUE(shows(700, 550, red));
        EXPECT_EQ(x.activeWindow(), beta.window());
        EXPECT_TRUE(reaches([&] { return windowAt(400, 350) == topLevel(beta.window()); }));
        EXPECT_FALSE(x.clientOf(getpid()));
        overlay->orderOut();
        present();
        EXPECT_TRUE(shows(400, 350, slate));
        xcb_destroy_window(server(), menu);
    }

    overlay->setIgnoresMouse(false);
    overlay->orderBelow({.id = beta.window()});
    present();
    EXPECT_TRUE(shows(200, 150, red));
    EXPECT_TRUE(shows(400, 350, slate));
    EXPECT_TRUE(reaches([&] { return isOwn(windowAt(200, 150)); }));
    EXPECT_TRUE(reaches([&] { return windowAt(400, 350) == topLevel(beta.window()); }));
    alpha.activate();
    EXPECT_TRUE(shows(200, 150, slate));
    EXPECT_TRUE(shows(650, 500, slate));
    beta.activate();
    EXPECT_TRUE(shows(200, 150, red));
    EXPECT_TRUE(shows(650, 500, slate));
    x.place(beta.window(), {.x = 550, .y = 350, .width = 500, .height = 300});
    EXPECT_TRUE(shows(400, 300, red));
    EXPECT_TRUE(shows(1000, 600, slate));
    EXPECT_TRUE(reaches([&] { return windowAt(1000, 600) == topLevel(beta.window()); }));
    EXPECT_TRUE(reaches([&] { return isOwn(windowAt(400, 300)); }));
    x.close(beta.window());
    EXPECT_TRUE(shows(1000, 600, red));
}

INSTANTIATE_TEST_SUITE_P(On, StageOnManager, onEveryManager, managerName);

TEST_F(StageTest, edgesFallOnTheNearestPixel) {
    const auto window = createWindow({.x = 0, .y = 0, .width = 2000, .height = 2000}, red);
    const std::vector<std::pair<Rect, PixelRect>> frames{
        {{.x = 10, .y = 20, .width = 30, .height = 40}, {.x = 10, .y = 20, .width = 30, .height = 40}},
        {{.x = 10.5, .y = 20.4, .width = 30, .height = 40.2}, {.x = 11, .y = 20, .width = 30, .height = 41}},
        {{.x = 1279.6, .y = 0.4, .width = 600.2, .height = 1023.2},
         {.x = 1280, .y = 0, .width = 600, .height = 1024}}};
    for (const auto& [frame, pixels] : frames) {
        window->setFrame(frame);
        window->orderFront();
        present();
        const int right = pixels.x + pixels.width;
        const int bottom = pixels.y + pixels.height;
        EXPECT_TRUE(shows(pixels.x, pixels.y, red));
        EXPECT_TRUE(shows(right - 1, bottom - 1, red));
        EXPECT_NE(pixelAt(pixels.x - 1, pixels.y), red);
        EXPECT_TRUE(pixels.y == 0 || pixelAt(pixels.x, pixels.y - 1) != red);
        EXPECT_TRUE(right == 1880 || pixelAt(right, bottom - 1) != red);
        EXPECT_TRUE(bottom == 1024 || pixelAt(right - 1, bottom) != red);
    }
}

TEST_F(StageTest, levelsComeBeforeTheOrderOfShowing) {
    const auto panel = createWindow({.x = 100, .y = 100, .width = 100, .height = 100}, green);
    const auto first = createWindow({.x = 50, .y = 50, .width = 100, .height = 100}, red);
    const auto second = createWindow({.x = 20, .y = 20, .width = 100, .height = 100}, slate);
    panel->setLevel(StageLevel::panel);
    for (auto* window : {panel.get(), first.get(), second.get()}) {
        window->orderFront();
        present();
    }
    EXPECT_TRUE(shows(110, 110, green));
    EXPECT_TRUE(shows(60, 60, slate));
    first->orderFront();
    present();
    EXPECT_TRUE(shows(110, 110, green));
    EXPECT_TRUE(shows(60, 60, red));
}

TEST_F(StageTest, aProgramThatInsistsOnTheFrontIsLeftThere) {
    const auto window = createWindow(studio, red);
    window->orderFront();
    present();
    const xcb_window_t rival = mapUnmanaged({.x = 100, .y = 100, .width = 200, .height = 200});
    int raises = 0;
    const auto insist = [&] {
        desktop.x().settle();
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(server())}) {
            const auto* news = reinterpret_cast<const xcb_visibility_notify_event_t*>(event.get());
            if ((event->response_type & 0x7F) == XCB_VISIBILITY_NOTIFY &&
                news->state != XCB_VISIBILITY_UNOBSCURED) {
                constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
                xcb_configure_window(server(), rival, XCB_CONFIG_WINDOW_STACK_MODE, &above);
                ++raises;
            }
        }
        desktop.x().settle();
    };
    // Turn by turn, for less than the time after which the stage would try again.
    for (int turn = 0; turn < 20; ++turn) {
        insist();
        settle();
        scheduler.advance(20ms);
        settle();
    }
    EXPECT_GT(raises, 0);
    EXPECT_LT(raises, 10);
}

TEST_F(StageTest, whatNothingBlendsIsCutOutAndTheCompositorIsFollowed) {
    const Application below =
        Application::probe(desktop, "plain", "below", {.x = 0, .y = 0, .width = 600, .height = 500});
    Image checks{.width = 2, .height = 2, .pixels = {red, 0x40400000, 0, 0x90900000}};
    const auto pattern = std::make_shared<const Image>(std::move(checks));
    const auto overlay = stage->createWindow({.x = 100, .y = 100, .width = 200, .height = 200});
    overlay->setPicture(
        {.tiles = {{.image = even(0x40000000), .area = {.width = 100, .height = 200}},
                   {.image = even(green), .area = {.width = 20, .height = 20}},
                   {.image = pattern, .area = {.x = 100, .y = 3, .width = 51, .height = 5}}}});
    overlay->orderFront();
    present();
    int changes = 0;
    const auto registration = stage->observeStyleChanges([&] { ++changes; });
    const auto expect = [&](std::array<std::uint32_t, 6> pixels) {
        EXPECT_TRUE(shows(110, 110, pixels[0]));
        EXPECT_TRUE(shows(150, 150, pixels[1]));
        EXPECT_TRUE(shows(250, 107, pixels[2]));
        EXPECT_TRUE(shows(249, 107, pixels[3]));
        EXPECT_TRUE(shows(249, 106, pixels[4]));
        EXPECT_TRUE(shows(250, 106, pixels[5]));
        EXPECT_TRUE(shows(251, 107, slate));
        EXPECT_TRUE(shows(303, 200, slate));
    };
    const std::array blended{green, 0xFF162029, red, 0xFF562028, 0xFF9D1318, slate};
    const std::array cut{green, slate, red, slate, 0xFF900000, slate};
    expect(cut);
    startCompositor();
    expect(blended);
    compositor->signal(SIGKILL);
    EXPECT_TRUE(reaches([&] { return !stage->style().isTranslucent; }));
    expect(cut);
    EXPECT_EQ(changes, 2);
}

// Server and programs paint every piece that they get back.
TEST_F(StageTest, whatWasTakenPieceByPieceIsGivenBackAtOnce) {
    const auto below = mapUnmanaged({.x = 100, .y = 100, .width = 300, .height = 300});
    constexpr std::uint32_t exposure = XCB_EVENT_MASK_EXPOSURE;
    xcb_change_window_attributes(server(), below, XCB_CW_EVENT_MASK, &exposure);
    const auto exposures = [&] {
        desktop.x().settle();
        int count = 0;
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(server())}) {
            count += (event->response_type & 0x7F) == XCB_EXPOSE ? 1 : 0;
        }
        return count;
    };
    Image sieve{.width = 4, .height = 2, .pixels = {red, 0, red, 0, 0, red, 0, red}};
    const auto overlay = stage->createWindow({.x = 150, .y = 150, .width = 200, .height = 200});
    overlay->setPicture({.tiles = {{.image = std::make_shared<const Image>(std::move(sieve)),
                                    .area = {.x = 20, .y = 20, .width = 4, .height = 2}}}});
    for (int i = 0; i < 2; ++i) {
        overlay->orderFront();
        present();
        EXPECT_TRUE(shows(170, 170, red));
        EXPECT_TRUE(shows(171, 170, green));
        std::ignore = exposures();
        overlay->orderOut();
        present();
        EXPECT_EQ(exposures(), 1);
        EXPECT_TRUE(shows(170, 170, green));
    }
}

TEST_F(StageTest, aWindowWaitsOutOfSightBeforeItIsShownAndForAWhileAfter) {
    startCompositor();
    const Application below = Application::probe(desktop, "plain", "below", somewhere);
    const auto waiting = [&] {
        const Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(server(), xcb_query_tree(server(), desktop.x().root()), nullptr));
        const std::span children(xcb_query_tree_children(tree.get()), tree->children_len);
        return std::ranges::count_if(children, [&](xcb_window_t window) {
            const auto cookie = xcb_get_window_attributes(server(), window);
            const Reply<xcb_get_window_attributes_reply_t> attributes(
                xcb_get_window_attributes_reply(server(), cookie, nullptr));
            return isOwn(window) && attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        });
    };
    const auto window = createWindow(studio, red);
    window->prepare();
    present();
    EXPECT_EQ(waiting(), 1);
    EXPECT_TRUE(shows(300, 300, slate));
    for (int i = 0; i < 2; ++i) {
        window->orderFront();
        present();
        EXPECT_TRUE(shows(300, 300, red));
        window->orderOut();
        present();
        EXPECT_TRUE(shows(300, 300, slate));
        EXPECT_EQ(waiting(), 1);
    }
    scheduler.advance(10s);
    settle();
    EXPECT_EQ(waiting(), 0);
    // A compositor that hears of the end and of the next beginning in one breath may miss both. It has heard
    // of one when it shows what came after.
    std::ignore = mapUnmanaged({.x = 1400, .y = 500, .width = 100, .height = 100});
    EXPECT_TRUE(shows(1450, 550, green));
    window->orderFront();
    present();
    EXPECT_TRUE(shows(300, 300, red));
}

TEST_F(StageTest, showingAndHidingLeavesNothingBehind) {
    const auto overlay = stage->createWindow({.x = 0, .y = 0, .width = 64, .height = 48});
    overlay->setIgnoresMouse(false);
    const auto image = std::make_shared<const Image>(
        Image{.width = 16, .height = 16, .pixels = std::vector<std::uint32_t>(256, red)});
    const auto showAndHide = [&](int times) {
        for (int i = 0; i < times; ++i) {
            overlay->setPicture(
                {.tiles = {{.image = i % 2 == 0 ? image : std::make_shared<const Image>(*image),
                            .area = {.width = 64, .height = 48}}}});
            overlay->orderFront();
            stage->present();
            overlay->orderOut();
            present();
            scheduler.advance(1ms);
        }
    };
    const auto resources = [&] {
        return resourcesOf(desktop.x(), xcb_get_setup(connection->get())->resource_id_base);
    };
    showAndHide(500);
    const auto resourcesBefore = resources();
    const auto bytesBefore = mallinfo2().uordblks;
    showAndHide(10'000);
    EXPECT_EQ(resources(), resourcesBefore);
    EXPECT_LT(mallinfo2().uordblks, bytesBefore + 65'536);
}

struct NothingInstalled final : InstalledApplications {
    std::optional<std::string> name(std::string_view /*identity*/) override { return {}; }

    std::shared_ptr<const Image> icon(std::string_view /*identity*/) override { return {}; }
};

TEST_F(StageTest, theProgramIsActiveWhileAWindowOfItsOwnIs) {
    NothingInstalled installed;
    x11::Accessibility accessibility(*connection, *windowManager, scheduler, installed,
                                     {.ownProcess = getpid(), .isWayland = false, .openSettings = [] {}});
    x11::ApplicationActivity activity(*connection, accessibility, scheduler, getpid());
    std::vector<bool> changes;
    const auto registration = activity.observe([&](bool isActive) { changes.push_back(isActive); });
    const Application other = Application::probe(desktop, "plain", "other", somewhere);
    const xcb_window_t own = xcb_generate_id(server());
    xcb_create_window(server(), XCB_COPY_FROM_PARENT, own, desktop.x().root(), 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(server(), own);
    desktop.x().flush();
    EXPECT_TRUE(reaches([&] { return changes == std::vector{true}; }));
    for (const auto window : {other.window(), own}) {
        desktop.x().activate(window);
        require("the other window", [&] { return desktop.x().activeWindow() == window; });
    }
    other.activate();
    EXPECT_TRUE(reaches([&] { return changes.size() > 1; }));
    EXPECT_EQ(changes, (std::vector{true, false}));
    EXPECT_FALSE(activity.isActive());
}

} // namespace karto::desktop
