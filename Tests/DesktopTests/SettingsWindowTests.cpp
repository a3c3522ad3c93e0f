// The settings window of the real program, used with a real keyboard and pointer.

#include "DesktopTest.h"
#include "Support/Mouse.h"

#include <string>

namespace karto::desktop {

namespace {

// Zones that a test edits on the screen are not below it.
constexpr Rect settingsArea{.x = 1000, .y = 100, .width = 760, .height = 620};

class SettingsWindowTest : public DesktopTest {
protected:
    // Starts the program; its settings are in front, with the list of sections in focus.
    void startWithSettings(bool isFirstRun) {
        if (isFirstRun) {
            std::filesystem::remove(KartoProcess::configurationPath(desktop));
        }
        startKarto();
        if (!isFirstRun) {
            openSettings();
        }
        const auto settings = ownWindow().value_or(XCB_WINDOW_NONE);
        desktop.x().place(settings, settingsArea);
        require("the settings aside", [&] { return desktop.x().frameOf(settings)->x > zone::one.maxX(); });
        require("the preview", [&] { return !desktop.x().unmanagedFrames("karto").empty(); });
    }

    void openSettings() {
        KartoProcess second(desktop);
        ASSERT_EQ(second.process().waitForExit(), (Exit{.status = 0, .signal = {}}));
    }

    void tap(const std::string& key, int times = 1) const {
        for (int i = 0; i < times; ++i) {
            keys.tap(key);
        }
    }

    void tapWith(const std::vector<std::string>& modifiers, const std::string& key) const {
        for (const auto& modifier : modifiers) {
            keys.press(modifier);
        }
        keys.tap(key);
        for (const auto& modifier : modifiers) {
            keys.release(modifier);
        }
    }

    // From the list of sections down to the layout, over the map's two displays to the presets.
    void choosePreset() {
        tap("DOWN", 3);
        tap("TAB", 3);
        const auto before = desktop.x().unmanagedFrames("karto").size();
        tap("SPCE");
        require("the presets", [&] { return desktop.x().unmanagedFrames("karto").size() > before; });
        tap("DOWN");
        tap("RTRN");
    }

    // A click any sooner would go to what is below, and take the keyboard there.
    void waitForButtonsOfFirstZone() {
        constexpr std::uint32_t border = 0x6A6A6A;
        int step = 0;
        require("the zone's buttons", [&] {
            mouse.move({.x = zone::one.width / 2 + double(++step % 2), .y = zone::one.height / 4});
            return desktop.x().colorAt(int(zone::one.width / 2 - 50), int(zone::one.height / 2)) == border;
        });
    }

    // The button in the middle of zone 1 divides it into rows.
    ::testing::AssertionResult splitsFirstZoneOnScreen(const std::string& text) {
        waitForButtonsOfFirstZone();
        mouse.click({.x = zone::one.width / 2, .y = zone::one.height / 2});
        return writes(text);
    }

    // What the file holds below its explanations; empty while there is none.
    [[nodiscard]] std::string written() const {
        const std::string all = contentsOf(KartoProcess::configurationPath(desktop));
        const auto start = all.find("[profile]");
        return start != std::string::npos ? all.substr(start) : std::string();
    }

    ::testing::AssertionResult writes(const std::string& text) {
        return eventually([&] { return written() == text; })
                   ? ::testing::AssertionSuccess()
                   : ::testing::AssertionFailure() << "the file holds " << written();
    }

    Mouse mouse{desktop.x()};
};

const std::string studio = R"([profile]
name = "default"

[[display]]
name = "Studio"
orientation = "landscape"

[display.split]
axis = "vertical"
at = 0.5

[display.split.first]

[display.split.second]
)";

const std::string studioSplit = R"([profile]
name = "default"

[[display]]
name = "Studio"
orientation = "landscape"

[display.split]
axis = "vertical"
at = 0.5

[display.split.first.split]
axis = "horizontal"
at = 0.5

[display.split.first.split.first]

[display.split.first.split.second]

[display.split.second]
)";

} // namespace

TEST_F(SettingsWindowTest, aFirstRunEndsWithAWindowInAZone) {
    startWithSettings(true);
    EXPECT_EQ(written(), "");
    choosePreset();
    EXPECT_TRUE(writes(studio));

    EXPECT_TRUE(splitsFirstZoneOnScreen(studioSplit));
    tapWith({"LCTL"}, "AB01");
    EXPECT_TRUE(writes(studio));
    tapWith({"LCTL", "LFSH"}, "AB01");
    EXPECT_TRUE(writes(studioSplit));
    takePicture("layout");

    const Application window = Application::probe(desktop, "plain", "alpha", somewhere);
    EXPECT_TRUE(pressUntilFits("AE02", window, {.x = 0, .y = 400, .width = 640, .height = 400}));
}

TEST_F(SettingsWindowTest, whatIsRecordedIsClaimedAndCanBeReverted) {
    startWithSettings(false);
    tap("DOWN");
    // Behind the hyper key and four other commands; a modifier held with the key does not count.
    tap("TAB", 6);
    tap("SPCE");
    tapWith({"LFSH"}, "AD06");
    EXPECT_TRUE(eventually([&] { return written().contains("tidy = \"y\""); }));
    // Tab and escape belong to the recording: the first is another command's, the second cancels.
    tap("SPCE");
    tap("TAB");
    tap("SPCE");
    tap("ESC");
    closeOwnWindow();
    EXPECT_NE(press("AD06", "tidy"), "");

    openSettings();
    ASSERT_TRUE(ownWindow());
    tap("DOWN");
    tap("TAB");
    tap("SPCE");
    // The recording may begin later than the first of them.
    const std::string recorded = R"(modifiers = ["control", "option"])";
    EXPECT_TRUE(eventually([&] {
        tapWith({"LCTL"}, "LALT");
        return eventually([&] { return written().contains(recorded); }, 1s);
    }));
    // The last control is the one before the first.
    tapWith({"LFSH"}, "TAB");
    tapWith({"LFSH"}, "TAB");
    tap("SPCE");
    EXPECT_TRUE(eventually([&] { return !written().contains(recorded); }));
    EXPECT_TRUE(written().contains("tidy = \"y\""));
}

TEST_F(SettingsWindowTest, aZoneClickedOnScreenIsSelectedInItsListWhateverSectionWasShown) {
    startWithSettings(false);
    waitForButtonsOfFirstZone();
    const auto border = [&] { return desktop.x().colorAt(1, 200); };
    const auto before = border();
    mouse.click({.x = zone::one.width / 2, .y = zone::one.height / 4});
    require("the zone marked", [&] { return border() != before; });
    const auto marked = border();
    takePicture("selected");
    // From the selected row's section to the first one and back, and on to the next zone.
    tapWith({"LFSH"}, "TAB");
    tap("UP", 3);
    tap("DOWN", 3);
    tap("TAB", 4);
    tap("DOWN");
    EXPECT_EQ(border(), marked);
    takePicture("come back");
}

TEST_F(SettingsWindowTest, quittingRightAfterAnEditWritesIt) {
    startWithSettings(true);
    const auto between = [&] { return desktop.x().colorAt(640, 780); };
    const auto before = between();
    choosePreset();
    // The zones are shown at once.
    require("the zones", [&] { return between() != before; });
    shouldSurvive = false;
    karto->process().signal(SIGTERM);
    EXPECT_EQ(karto->process().waitForExit(), (Exit{.status = 0, .signal = {}}));
    EXPECT_EQ(written(), studio);
}

} // namespace karto::desktop
