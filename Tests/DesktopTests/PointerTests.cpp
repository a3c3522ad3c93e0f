#include "DesktopTest.h"
#include "StageTest.h"

#include "Support/KeyPresser.h"

#include <gmock/gmock.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <fstream>
#include <optional>
#include <utility>

namespace karto {

// The name is the one that the test library looks for, next to the type.
// NOLINTNEXTLINE(misc-use-anonymous-namespace)
static void PrintTo(const PointerEvent& event, std::ostream* out) {
    constexpr std::array names{"moved", "left", "pressed", "dragged", "released", "cancelled"};
    *out << names.at(std::size_t(event.action)) << ' ' << event.place.x << ',' << event.place.y << " with "
         << event.held.bits;
}

} // namespace karto

namespace karto::desktop {

namespace {

using enum PointerAction;
using ::testing::ElementsAre;

constexpr PointerEvent is(PointerAction action, double x, double y, std::uint32_t held = 0) {
    return {.action = action, .place = {.x = x, .y = y}, .held = {.bits = held}};
}

void append(std::string& bytes, std::initializer_list<std::uint32_t> words) {
    for (const auto word : words) {
        bytes.append(reinterpret_cast<const char*>(&word), sizeof word);
    }
}

// A cursor of the theme file format in several sizes, each as large as it says.
std::string themeCursor(std::initializer_list<std::uint32_t> sizes) {
    constexpr std::uint32_t imageType = 0xFFFD0002;
    const auto count = std::uint32_t(sizes.size());
    std::string table = "Xcur";
    append(table, {16, 0x10000, count});
    std::string images;
    for (const auto size : sizes) {
        append(table, {imageType, size, 16 + 12 * count + std::uint32_t(images.size())});
        append(images, {36, imageType, size, 1, size, size, size / 2, size / 2, 0});
        for (auto pixel = 0U; pixel < size * size; ++pixel) {
            append(images, {0xFF00FF00});
        }
    }
    return table + images;
}

} // namespace

// A window over much of the first display, directly below another program's.
class PointerTest : public StageTest {
protected:
    explicit PointerTest(const std::string& manager = "openbox")
        : StageTest(manager) {}

    void SetUp() override {
        window->setPicture({.tiles = {{.image = even(red), .area = {.width = 50, .height = 50}}}});
        window->setIgnoresMouse(false);
        window->orderBelow({.id = settings.window()});
        stage->present();
        require("the window", [&] {
            return reaches([&] { return windowAt(600, 300) == topLevel(settings.window()); }) &&
                   isOwn(windowAt(900, 700)) && !isOwn(windowAt(1500, 500));
        });
        settle();
        events.clear();
    }

    // The server has handled what the test and the program have asked, and has told of it.
    void settle() {
        static_cast<void>(desktop.x().activeWindow());
        connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->get()),
                                                       x11::deadlineFromNow(patience));
        scheduler.advance(0ms);
    }

    void moveTo(int x, int y) {
        movePointer(x, y);
        settle();
    }

    void press() {
        button(XCB_BUTTON_PRESS, 1);
        settle();
    }

    void release() {
        button(XCB_BUTTON_RELEASE, 1);
        settle();
    }

    void beginGesture() {
        moveTo(140, 130);
        press();
        ASSERT_FALSE(events.empty());
        ASSERT_EQ(events.back(), is(pressed, 100, 100));
        events.clear();
    }

    std::vector<PointerEvent> taken() { return std::exchange(events, {}); }

    Application settings =
        Application::probe(desktop, "plain", "settings", {.x = 500, .y = 200, .width = 400, .height = 300});
    std::unique_ptr<BorderlessWindow> window =
        stage->createWindow({.x = 40, .y = 30, .width = 1240, .height = 770});
    std::vector<PointerEvent> events;
    Registration registration =
        window->observePointer([this](const PointerEvent& event) { events.push_back(event); });
};

class PointerOnManager : public PointerTest, public ::testing::WithParamInterface<std::string> {
protected:
    PointerOnManager()
        : PointerTest(GetParam()) {}
};

TEST_P(PointerOnManager, theWindowUnderThePointerHearsOfItAndNoOther) {
    const auto other = createWindow({.x = 1280, .y = 0, .width = 600, .height = 900}, green);
    std::vector<PointerEvent> othersEvents;
    const auto othersRegistration =
        other->observePointer([&](const PointerEvent& event) { othersEvents.push_back(event); });
    other->setIgnoresMouse(false);
    other->orderBelow({.id = settings.window()});
    stage->present();
    moveTo(140, 130);
    moveTo(900, 700);
    EXPECT_EQ(window->pointer(), (Point{.x = 860, .y = 670}));
    moveTo(600, 300);
    EXPECT_FALSE(window->pointer());
    moveTo(1300, 300);
    moveTo(1279, 799);
    EXPECT_THAT(taken(), ElementsAre(is(moved, 100, 100), is(moved, 860, 670), is(left, 560, 270),
                                     is(moved, 1239, 769)));
    EXPECT_THAT(othersEvents, ElementsAre(is(moved, 20, 300), is(left, -1, 799)));

    // Another program may take the pointer for a while.
    const Reply<xcb_grab_pointer_reply_t> grabbed(xcb_grab_pointer_reply(
        server(),
        xcb_grab_pointer(server(), 0, desktop.x().root(), 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                         XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME),
        nullptr));
    ASSERT_EQ(grabbed->status, XCB_GRAB_STATUS_SUCCESS);
    moveTo(1200, 700);
    xcb_ungrab_pointer(server(), XCB_CURRENT_TIME);
    moveTo(1279, 799);
    EXPECT_THAT(taken(), ElementsAre(is(left, 1239, 769), is(moved, 1239, 769)));

    // While the program is not active everything goes to what is below.
    window->setIgnoresMouse(true);
    stage->present();
    settle();
    EXPECT_FALSE(window->pointer());
    press();
    release();
    moveTo(1000, 600);
    EXPECT_THAT(taken(), ElementsAre(is(left, 1239, 769)));
    window->setIgnoresMouse(false);
    stage->present();
    // Nothing has been told yet: it is asked for.
    EXPECT_TRUE(reaches([&] { return window->pointer() == Point{.x = 960, .y = 570}; }));
    settle();
    EXPECT_THAT(taken(), ElementsAre(is(moved, 960, 570)));
}

TEST_P(PointerOnManager, aGestureGoesOnUntilItsEndWhateverBecomesOfWindowsMeanwhile) {
    const KeyPresser keys(desktop.x());
    moveTo(140, 130);
    press();
    moveTo(600, 300);
    window->setPicture({.tiles = {{.image = even(green), .area = {.x = 400, .width = 700, .height = 700}}}});
    stage->present();
    const Application late =
        Application::probe(desktop, "plain", "late", {.x = 100, .y = 90, .width = 300, .height = 300});
    settings.activate();
    window->orderBelow({.id = settings.window()});
    stage->present();
    EXPECT_TRUE(shows(1000, 600, green));
    keys.press("LALT");
    moveTo(1700, 900);
    keys.release("LALT");
    EXPECT_EQ(window->pointer(), (Point{.x = 1660, .y = 870}));
    release();
    moveTo(1600, 900);
    EXPECT_THAT(taken(), ElementsAre(is(moved, 100, 100), is(pressed, 100, 100), is(dragged, 560, 270),
                                     is(dragged, 1660, 870, ModifierBits::option), is(released, 1660, 870),
                                     is(left, 1660, 870)));
}

TEST_P(PointerOnManager, aGestureOfAWindowThatGoesAwayIsCancelled) {
    const auto hide = [&] { window->orderOut(); };
    const auto ignore = [&] { window->setIgnoresMouse(true); };
    const auto rebuild = [&] {
        window = stage->createWindow({.width = 100, .height = 100});
        registration = {};
    };
    for (const auto& goAway : std::vector<std::function<void()>>{hide, ignore}) {
        window->setIgnoresMouse(false);
        window->orderBelow({.id = settings.window()});
        stage->present();
        beginGesture();
        moveTo(150, 130);
        goAway();
        stage->present();
        settle();
        release();
        EXPECT_THAT(taken(), ElementsAre(is(dragged, 110, 100), is(cancelled, 110, 100), is(left, 110, 100)));
    }
    window->setIgnoresMouse(false);
    stage->present();
    beginGesture();
    registration = window->observePointer([&](const PointerEvent& event) {
        events.push_back(event);
        rebuild();
    });
    moveTo(150, 130);
    moveTo(160, 130);
    release();
    EXPECT_THAT(taken(), ElementsAre(is(dragged, 110, 100)));
}

INSTANTIATE_TEST_SUITE_P(On, PointerOnManager, onEveryManager, managerName);

TEST_F(PointerTest, ofManyMovementsTheNewestIsToldAndButtonsKeepTheirPlace) {
    for (int i = 0; i < 500; ++i) {
        movePointer(100 + i % 7, 130 + i);
    }
    button(XCB_BUTTON_PRESS, 1);
    for (int i = 0; i < 500; ++i) {
        movePointer(140 + i, 130);
    }
    settle();
    EXPECT_THAT(taken(), ElementsAre(is(moved, 62, 599), is(pressed, 62, 599), is(dragged, 599, 100)));
    release();
}

TEST_F(PointerTest, cursorsAreOfTheThemeAndTheSizeThatTheDesktopHasChosen) {
    const auto themes = desktop.home() / "themes";
    const auto cursors = themes / "mine" / "cursors";
    std::filesystem::create_directories(cursors);
    std::ofstream(cursors / "ew-resize") << themeCursor({24, 36, 48});
    setenv("XCURSOR_PATH", themes.c_str(), 1);
    unsetenv("XCURSOR_SIZE");
    const auto choose = [&](const std::string& size) {
        const auto resources = "Xcursor.theme:\tmine\n" + size + "\n";
        xcb_change_property(server(), XCB_PROP_MODE_REPLACE, desktop.x().root(), XCB_ATOM_RESOURCE_MANAGER,
                            XCB_ATOM_STRING, 8, std::uint32_t(resources.size()), resources.data());
        settle();
    };
    const Reply<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(server(), xcb_xfixes_query_version(server(), 5, 0), nullptr));
    // The width of the cursor that a person sees, and its name.
    const auto shown = [&] {
        settle();
        const Reply<xcb_xfixes_get_cursor_image_and_name_reply_t> image(
            xcb_xfixes_get_cursor_image_and_name_reply(
                server(), xcb_xfixes_get_cursor_image_and_name(server()), nullptr));
        const auto* name = xcb_xfixes_get_cursor_image_and_name_name(image.get());
        return std::pair(int(image->width), std::string(name, image->nbytes));
    };
    choose("Xcursor.size:\t36");
    moveTo(140, 130);
    EXPECT_EQ(shown().second, "left_ptr");
    window->setCursor(Cursor::resizeLeftRight);
    EXPECT_EQ(shown(), std::pair(36, std::string("sb_h_double_arrow")));
    choose("Xcursor.size:\t24");
    EXPECT_EQ(shown(), std::pair(24, std::string("sb_h_double_arrow")));
    // That of larger text when no other is chosen.
    choose("Xft.dpi:\t216");
    EXPECT_EQ(shown(), std::pair(48, std::string("sb_h_double_arrow")));
    // The theme lacks it.
    window->setCursor(Cursor::resizeUpDown);
    EXPECT_EQ(shown().second, "sb_v_double_arrow");
    // As long as the button is down, also elsewhere.
    press();
    moveTo(1500, 500);
    EXPECT_EQ(shown().second, "sb_v_double_arrow");
    release();
    EXPECT_NE(shown().second, "sb_v_double_arrow");
    moveTo(140, 130);
    window->setCursor(Cursor::arrow);
    EXPECT_EQ(shown().second, "left_ptr");
    unsetenv("XCURSOR_PATH");
}

// Whether a compositor runs.
class StagePictureTest : public PointerTest, public ::testing::WithParamInterface<bool> {};

TEST_P(StagePictureTest, aNewPictureCostsWhatItChangesAndThePointerIsHeardEverywhere) {
    if (GetParam()) {
        startCompositor();
    }
    const auto bars =
        std::make_shared<const Image>(Image{.width = 2, .height = 1, .pixels = {red, 0x40404040}});
    Picture picture;
    const auto add = [&](std::shared_ptr<const Image> image, const PixelRect& area) {
        picture.tiles.push_back({.image = std::move(image), .area = area});
    };
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < 10; ++column) {
            const PixelRect zone{.x = column * 384, .y = row * 432, .width = 384, .height = 432};
            add(even(0x2E000000), zone);
            for (int part = 0; part < 9; ++part) {
                add(bars, {.x = zone.x + part * 16, .y = zone.y, .width = 16, .height = 16});
            }
        }
    }
    add(even(green), {.x = 380, .width = 8, .height = 2160});
    window->setFrame({.width = 3840, .height = 2160});
    window->setPicture(picture);
    stage->present();
    EXPECT_TRUE(shows(384, 700, green));
    for (const int x : {383, 390, 200}) {
        picture.tiles.back().area.x = x;
        window->setPicture(picture);
        const auto before = xcb_total_written(connection->get());
        stage->present();
        EXPECT_LT(xcb_total_written(connection->get()) - before, 1500U);
        EXPECT_TRUE(shows(x, 700, green));
        EXPECT_TRUE(shows(x + 7, 30, green));
        EXPECT_NE(pixelAt(x - 1, 700), green);
        EXPECT_NE(pixelAt(x + 8, 700), green);
    }
    EXPECT_TRUE(shows(384, 0, red));
    events.clear();
    moveTo(400, 700);
    press();
    release();
    EXPECT_THAT(taken(), ElementsAre(is(moved, 400, 700), is(pressed, 400, 700), is(released, 400, 700)));
}

INSTANTIATE_TEST_SUITE_P(Compositor, StagePictureTest, ::testing::Bool());

} // namespace karto::desktop
