// Zones edited by a real pointer, in a preview that belongs to a program of its own.

#include "DesktopTest.h"
#include "Support/Mouse.h"
#include "Support/Wallpaper.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace karto::desktop {

namespace {

// The sample configuration as the program prints it: "|" divides the width, "/" the height.
const std::string untouched = "(0.5 . | (0.5 . / .)); (0.5 . / .); 1 of 1";
// Below all zones that the tests edit.
constexpr Rect settingsArea{.x = 1330, .y = 700, .width = 400, .height = 200};

class ZoneEditingTest : public DesktopTest {
protected:
    using DesktopTest::DesktopTest;

    void startPreview(const std::string& scale = "1") {
        const auto number = [&](double pixels) { return fmt::format("{}", int(pixels / std::stod(scale))); };
        preview = std::make_unique<ChildProcess>(
            desktop.start({KARTO_EDITING_PREVIEW_PROGRAM, KartoProcess::configurationPath(desktop).native(),
                           number(settingsArea.x), number(settingsArea.y), number(settingsArea.width),
                           number(settingsArea.height)},
                          {{"QT_SCALE_FACTOR", scale}}));
        require("the settings", [&] {
            settings = desktop.x().clientOf(preview->pid()).value_or(XCB_WINDOW_NONE);
            return settings != XCB_WINDOW_NONE;
        });
        desktop.x().activate(settings);
        require("the active settings", [&] { return desktop.x().activeWindow() == settings; });
        require("the overlay", [&] { return !desktop.x().unmanagedFrames("karto").empty(); });
    }

    void TearDown() override {
        if (preview) {
            EXPECT_TRUE(preview->isAlive()) << preview->errors();
            if (HasFailure()) {
                std::cerr << preview->output();
            }
        }
        DesktopTest::TearDown();
    }

    [[nodiscard]] std::string lastLine() const {
        auto output = preview->output();
        if (!output.ends_with('\n')) {
            return {};
        }
        output.pop_back();
        return output.substr(output.rfind('\n') + 1);
    }

    // The last that the program said about its zones, and why it did.
    ::testing::AssertionResult says(const std::string& line) {
        if (eventually([&] { return lastLine() == line; })) {
            return ::testing::AssertionSuccess();
        }
        return ::testing::AssertionFailure() << '"' << lastLine() << "\" instead of \"" << line << '"';
    }

    // Moves the pointer there, again and again: the first time the program may not have its windows in place,
    // and a busy mutter at times leaves on the screen what a window showed before until the window changes
    // again.
    ::testing::AssertionResult marks(Point pointer, int x, int y, bool isMarked = true) {
        const auto isSeen = [&] { return isMarkedAt(x, y) == isMarked; };
        const bool is = eventually([&] {
            mouse.move(pointer);
            if (eventually(isSeen, 500ms)) {
                return true;
            }
            for (const Point elsewhere : {Point{.x = 100, .y = 100}, Point{.x = double(x), .y = double(y)}}) {
                mouse.move(elsewhere);
                eventually(isSeen, 100ms);
            }
            return false;
        });
        return is ? ::testing::AssertionSuccess()
                  : ::testing::AssertionFailure() << fmt::format("{:06x}", desktop.x().colorAt(x, y));
    }

    // A marked strip has the colour of the accent, most of it even where the desktop shines through.
    [[nodiscard]] bool isMarkedAt(int x, int y) const {
        const auto color = desktop.x().colorAt(x, y);
        const int red = int(color >> 16U & 0xFF);
        const int blue = int(color & 0xFF);
        return std::abs(red - blue) > 70;
    }

    void drag(Point from, Point to) {
        mouse.press(from);
        mouse.move(to);
    }

    Mouse mouse{desktop.x()};
    std::unique_ptr<ChildProcess> preview;
    xcb_window_t settings = XCB_WINDOW_NONE;
};

class ZoneEditingManagerTest : public ZoneEditingTest, public ::testing::WithParamInterface<std::string> {
protected:
    ZoneEditingManagerTest()
        : ZoneEditingTest(GetParam()) {}
};

} // namespace

TEST_P(ZoneEditingManagerTest, boundariesAreMarkedDraggedAndSnappedAndZonesClicked) {
    // Some managers paint a colourful desktop, and let windows appear slowly. One keeps windows without
    // borders that are as large as their display in front.
    const Application backdrop =
        Application::probe(desktop, "borderless", "backdrop", {.x = 0, .y = 0, .width = 1280, .height = 790});
    require("the backdrop", [&] { return desktop.x().colorAt(640, 700) == 0x1D2B36; });
    startPreview();
    EXPECT_TRUE(marks({.x = 640, .y = 300}, 640, 100));
    EXPECT_TRUE(eventually([&] { return isMarkedAt(635, 100) && isMarkedAt(644, 700); }));
    EXPECT_TRUE(eventually([&] { return !(isMarkedAt(634, 100) || isMarkedAt(645, 700)); }));
    EXPECT_TRUE(marks({.x = 900, .y = 402}, 1279, 404));
    EXPECT_TRUE(eventually([&] { return !isMarkedAt(640, 100); }));
    EXPECT_TRUE(marks({.x = 900, .y = 300}, 900, 402, false));

    keys.press("LALT");
    drag({.x = 642, .y = 300}, {.x = 700, .y = 350});
    EXPECT_TRUE(says("drag Studio; (0.546875 . | (0.5 . / .)); (0.5 . / .); 1 of 1"));
    EXPECT_TRUE(marks({.x = 700, .y = 351}, 704, 100));
    EXPECT_TRUE(eventually([&] { return isMarkedAt(695, 100); }));
    EXPECT_TRUE(eventually([&] { return !(isMarkedAt(694, 100) || isMarkedAt(705, 100)); }));
    keys.release("LALT");
    mouse.move({.x = 850, .y = 351});
    EXPECT_TRUE(says("drag Studio; (0.666667 . | (0.5 . / .)); (0.5 . / .); 1 of 1"));
    // Onto the other display, and back beyond the desktop's edge.
    mouse.move({.x = 1500, .y = 900});
    EXPECT_TRUE(says("drag Studio; (0.99 . | (0.5 . / .)); (0.5 . / .); 1 of 1"));
    mouse.move({.x = 0, .y = 0});
    EXPECT_TRUE(says("drag Studio; (0.01 . | (0.5 . / .)); (0.5 . / .); 1 of 1"));
    mouse.move({.x = 320, .y = 600});
    mouse.release();
    EXPECT_TRUE(says("commit Studio; (0.25 . | (0.5 . / .)); (0.5 . / .); 2 of 2"));

    // On the other display, to the line of the panel's edge.
    drag({.x = 1400, .y = 497}, {.x = 1400, .y = 248});
    mouse.release();
    EXPECT_TRUE(says("commit Tower; (0.25 . | (0.5 . / .)); (0.25 . / .); 3 of 3"));
    mouse.click({.x = 100, .y = 100});
    EXPECT_TRUE(says("click Studio 1; (0.25 . | (0.5 . / .)); (0.25 . / .); 3 of 3"));
    keys.tap("AD07");
    keys.tap("AD07");
    EXPECT_TRUE(says("undo; (0.5 . | (0.5 . / .)); (0.5 . / .); 1 of 3"));
}

INSTANTIATE_TEST_SUITE_P(OnEveryManager, ZoneEditingManagerTest, onEveryManager, managerName);

TEST_F(ZoneEditingTest, buttonsSplitAndRemoveZones) {
    startPreview();
    EXPECT_TRUE(marks({.x = 640, .y = 300}, 640, 100));

    struct Case {
        Point at;
        std::string_view says;
    };

    for (const auto& [at, expected] :
         {Case{{.x = 284, .y = 400}, "split Studio; (0.5 (0.5 . | .) | (0.5 . / .)); (0.5 . / .); 2 of 2"},
          Case{{.x = 196, .y = 413}, "remove Studio; (0.5 . | (0.5 . / .)); (0.5 . / .); 3 of 3"},
          Case{{.x = 320, .y = 386}, "split Studio; (0.5 (0.5 . / .) | (0.5 . / .)); (0.5 . / .); 4 of 4"},
          Case{{.x = 1616, .y = 249}, "remove Tower; (0.5 (0.5 . / .) | (0.5 . / .)); .; 5 of 5"},
          // The other display's only zone, and the gap between two buttons.
          Case{{.x = 1616, .y = 497}, "remove Tower; (0.5 (0.5 . / .) | (0.5 . / .)); .; 5 of 5"},
          Case{{.x = 302, .y = 200}, "click Studio 1; (0.5 (0.5 . / .) | (0.5 . / .)); .; 5 of 5"}}) {
        mouse.click(at);
        EXPECT_TRUE(says(std::string(expected)));
    }
}

TEST_F(ZoneEditingTest, zonesTooSmallForButtonsAreClickedAndTheirBoundariesDragged) {
    KartoProcess::writeConfiguration(desktop, R"([profile]
name = "Small"
[[display]]
name = "Studio"
orientation = "landscape"
split = { axis = "vertical", at = 0.0921875, first = {}, second = { split = { axis = "horizontal", at = 0.05, first = {}, second = {} } } }
)");
    startPreview();
    EXPECT_TRUE(marks({.x = 118, .y = 300}, 118, 100));
    mouse.click({.x = 59, .y = 400});
    EXPECT_TRUE(says("click Studio 1; (0.0921875 . | (0.05 . / .)); 1 of 1"));
    mouse.click({.x = 700, .y = 20});
    EXPECT_TRUE(says("click Studio 2; (0.0921875 . | (0.05 . / .)); 1 of 1"));
    keys.press("LALT");
    drag({.x = 118, .y = 400}, {.x = 128, .y = 400});
    mouse.release();
    keys.release("LALT");
    EXPECT_TRUE(says("commit Studio; (0.1 . | (0.05 . / .)); 2 of 2"));
    mouse.click({.x = 64, .y = 400});
    EXPECT_TRUE(says("split Studio; (0.1 (0.5 . / .) | (0.05 . / .)); 3 of 3"));
}

TEST_F(ZoneEditingTest, aDragOutlivesWhatItDragsAndWhatHappensAroundIt) {
    startPreview();
    EXPECT_TRUE(marks({.x = 640, .y = 300}, 640, 100));
    // The boundary vanishes.
    mouse.click({.x = 284, .y = 400});
    EXPECT_TRUE(says("split Studio; (0.5 (0.5 . | .) | (0.5 . / .)); (0.5 . / .); 2 of 2"));
    drag({.x = 320, .y = 200}, {.x = 427, .y = 200});
    EXPECT_TRUE(says("drag Studio; (0.5 (0.666667 . | .) | (0.5 . / .)); (0.5 . / .); 2 of 2"));
    keys.tap("AD07");
    EXPECT_TRUE(says("undo; (0.5 . | (0.5 . / .)); (0.5 . / .); 1 of 2"));
    mouse.move({.x = 500, .y = 200});
    mouse.release();
    EXPECT_TRUE(says("commit Studio; (0.5 . | (0.5 . / .)); (0.5 . / .); 1 of 2"));

    // The settings are lowered below another window and raised again.
    const Application other = Application::probe(desktop, "plain", "other", settingsArea);
    desktop.x().activate(settings);
    require("the active settings", [&] { return desktop.x().activeWindow() == settings; });
    EXPECT_TRUE(marks({.x = 640, .y = 300}, 640, 100));
    drag({.x = 640, .y = 200}, {.x = 320, .y = 200});
    desktop.x().lower(settings);
    EXPECT_TRUE(desktop.x().managerAnswers(patience));
    mouse.move({.x = 853, .y = 200});
    EXPECT_TRUE(says("drag Studio; (0.666667 . | (0.5 . / .)); (0.5 . / .); 1 of 2"));
    desktop.x().raise(settings);
    EXPECT_TRUE(desktop.x().managerAnswers(patience));
    mouse.move({.x = 960, .y = 200});
    mouse.release();
    EXPECT_TRUE(says("commit Studio; (0.75 . | (0.5 . / .)); (0.5 . / .); 2 of 2"));

    // A compositor comes and dies.
    EXPECT_TRUE(marks({.x = 960, .y = 200}, 960, 300));
    const auto opaque = desktop.x().colorAt(960, 300);
    mouse.press();
    {
        const ChildProcess compositor =
            desktop.start({"picom", "--backend", "xrender", "--config", "/dev/null"});
        mouse.move({.x = 640, .y = 200});
        EXPECT_TRUE(says("drag Studio; (0.5 . | (0.5 . / .)); (0.5 . / .); 2 of 2"));
        EXPECT_TRUE(
            eventually([&] { return isMarkedAt(640, 300) && desktop.x().colorAt(640, 300) != opaque; }));
    }
    mouse.move({.x = 320, .y = 200});
    EXPECT_TRUE(says("drag Studio; (0.25 . | (0.5 . / .)); (0.5 . / .); 2 of 2"));
    EXPECT_TRUE(eventually([&] { return desktop.x().colorAt(320, 300) == opaque; }));
    mouse.release();
    EXPECT_TRUE(says("commit Studio; (0.25 . | (0.5 . / .)); (0.5 . / .); 3 of 3"));
}

TEST_F(ZoneEditingTest, aDisplayThatGoesOrTurnsEndsADrag) {
    if (!desktop.hasOutputs()) {
        GTEST_SKIP() << "the outputs of this server are fixed";
    }
    startPreview();
    EXPECT_TRUE(marks({.x = 640, .y = 300}, 640, 100));
    drag({.x = 640, .y = 200}, {.x = 320, .y = 200});
    EXPECT_TRUE(says("drag Studio; (0.25 . | (0.5 . / .)); (0.5 . / .); 1 of 1"));
    desktop.setConnected("Tower", false);
    EXPECT_TRUE(says("screens; (0.25 . | (0.5 . / .)); (0.5 . / .); 2 of 2"));
    mouse.move({.x = 500, .y = 200});
    mouse.release();
    EXPECT_TRUE(marks({.x = 320, .y = 300}, 320, 100));
    drag({.x = 320, .y = 200}, {.x = 640, .y = 200});
    EXPECT_TRUE(says("drag Studio; (0.5 . | (0.5 . / .)); (0.5 . / .); 2 of 2"));
    desktop.resize("Studio", {.width = 800, .height = 1100});
    EXPECT_TRUE(says("screens; (0.5 . | (0.5 . / .)); (0.5 . / .); 3 of 3"));
    mouse.move({.x = 500, .y = 200});
    mouse.release();
    mouse.click({.x = 400, .y = 200});
    EXPECT_TRUE(says("click Studio none; (0.5 . | (0.5 . / .)); (0.5 . / .); 3 of 3"));
}

namespace {

struct EditingLook {
    std::string scale;
    bool isComposited = false;
    bool isLight = false;
};

class ZoneEditingLookTest : public ZoneEditingTest, public ::testing::WithParamInterface<EditingLook> {};

} // namespace

// Pictures of it.
TEST_P(ZoneEditingLookTest, everyStateLooksRight) {
    const auto& [scale, isComposited, isLight] = GetParam();
    const Wallpaper wallpaper(desktop.x(), isLight ? 0xEEF1F5 : 0x2B3440, isLight ? 0xC9D6E6 : 0x12161C);
    std::unique_ptr<ChildProcess> compositor;
    if (isComposited) {
        compositor = std::make_unique<ChildProcess>(
            desktop.start({"picom", "--backend", "xrender", "--config", "/dev/null"}));
    }
    startPreview(scale);
    takePicture("without a pointer");
    const double side = 28 * std::stod(scale);
    const double pitch = 36 * std::stod(scale);
    const Point middle{.x = 320, .y = 400};
    EXPECT_TRUE(marks({.x = 640, .y = 300}, 640, 100));
    takePicture("a boundary pointed at");
    mouse.move({.x = middle.x, .y = middle.y + side});
    takePicture("a zone pointed at");
    mouse.move({.x = middle.x - pitch, .y = middle.y});
    takePicture("a button pointed at");
    const Point help{.x = middle.x - pitch, .y = middle.y + 37 * std::stod(scale)};
    const auto before = desktop.x().colorAt(int(help.x), int(help.y));
    EXPECT_TRUE(eventually([&] { return desktop.x().colorAt(int(help.x), int(help.y)) != before; }));
    takePicture("a button that explains itself");
    mouse.press();
    takePicture("a button pressed");
    mouse.move({.x = middle.x, .y = middle.y + side});
    mouse.release();
    drag({.x = 640, .y = 300}, {.x = 800, .y = 250});
    EXPECT_TRUE(says("drag Studio; (0.625 . | (0.5 . / .)); (0.5 . / .); 1 of 1"));
    takePicture("a boundary dragged");
    mouse.release();
    mouse.click({.x = 1580 + pitch, .y = 249});
    EXPECT_TRUE(says("remove Tower; (0.625 . | (0.5 . / .)); .; 3 of 3"));
    mouse.move({.x = 1580 + pitch, .y = 499});
    takePicture("an only zone");
}

INSTANTIATE_TEST_SUITE_P(Looks, ZoneEditingLookTest,
                         ::testing::Values(EditingLook{.scale = "1", .isComposited = true, .isLight = true},
                                           EditingLook{.scale = "1", .isComposited = true, .isLight = false},
                                           EditingLook{.scale = "1", .isComposited = false, .isLight = true},
                                           EditingLook{.scale = "1", .isComposited = false, .isLight = false},
                                           EditingLook{.scale = "1.5", .isComposited = true, .isLight = true},
                                           EditingLook{
                                               .scale = "1.5", .isComposited = false, .isLight = false},
                                           EditingLook{.scale = "2", .isComposited = true, .isLight = false},
                                           EditingLook{.scale = "2", .isComposited = false, .isLight = true}),
                         [](const ::testing::TestParamInfo<EditingLook>& look) {
                             std::string name =
                                 "scale" + look.param.scale + (look.param.isLight ? "light" : "dark");
                             std::ranges::replace(name, '.', '_');
                             return name + (look.param.isComposited ? "composited" : "plain");
                         });

} // namespace karto::desktop
