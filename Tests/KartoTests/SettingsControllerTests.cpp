#include "Karto/Settings/SettingsController.h"

#include "Karto/Adapters/ConfigStore.h"
#include "Karto/Adapters/DisplayRegistry.h"
#include "Karto/Adapters/HotkeyService.h"
#include "Karto/Adapters/ModifierMonitor.h"
#include "Karto/Overlay/OverlayController.h"
#include "Karto/Overlay/ZoneEdit.h"
#include "Karto/Platform/Linux/PosixFileSystem.h"
#include "Karto/Settings/LayoutSettings.h"
#include "KartoCore/ConfigReading.h"
#include "KartoCore/TOMLWriter.h"
#include "Support/FixedConfig.h"
#include "Support/ManualFileWatch.h"
#include "Support/ManualScheduler.h"
#include "Support/MemoryCheckLog.h"
#include "Support/MemoryDesktop.h"
#include "Support/MemoryKeyEvents.h"
#include "Support/MemorySettingsWindow.h"
#include "Support/MemoryStage.h"
#include "Support/TemporaryFolder.h"
#include "Support/Trees.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

namespace karto::testing {

namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr Rect mainFrame = rectAt(0, 0, 1000, 800);
constexpr Rect sideFrame = rectAt(1000, 0, 600, 900);
const DisplayInfo mainDisplay{.name = "Main", .frame = mainFrame};
const DisplayInfo sideDisplay{.name = "Side", .frame = sideFrame};

// The real files, counted and not waited for, with the failure that a test asks for.
struct CountedFiles final : PosixFileSystem {
    FileResult<void> writeAtomically(const std::string& path, std::string_view bytes) override {
        if (writeError) {
            return std::unexpected(FileError{.kind = FileError::Kind::other, .message = *writeError});
        }
        writes += path.ends_with(".toml") ? 1 : 0;
        writeFile(path, std::string(bytes));
        return {};
    }

    int writes = 0;
    std::optional<std::string> writeError;
};

// For example "1[2]" for two zones with the second selected.
Picture describe(const OverlayContentView& view, const StageStyle& /*style*/) {
    std::string name;
    if (const auto* zones = std::get_if<OverlayZones>(&view.content)) {
        for (const OverlayZone& zone : *zones) {
            name += fmt::format(fmt::runtime(zone.isSelected ? "[{}]" : "{}"), zone.number);
        }
    }
    return pictureNamed(name.empty() ? "-" : name);
}

// The settings of a program on a desktop of two displays, over a real file.
struct SettingsDesk {
    explicit SettingsDesk(const std::optional<std::string>& text = std::nullopt) {
        desktop.connected = {screen("Main", mainFrame), screen("Side", sideFrame)};
        if (text) {
            writeFile(path, *text);
        }
        store.start([this](ConfigChangeEvent event) { settings.configChangedExternally(event); });
        overlay.start(monitor);
    }

    // Has the store notice the file.
    void notice() {
        watch.observers.notify();
        scheduler.advance(100ms);
    }

    void edit(const std::string& text) {
        writeFile(path, text);
        notice();
    }

    void splitMain() {
        settings.model()->edit([](LayoutEditor& editor) {
            const auto zones = editor.config().displays.front().zones();
            editor.split(zones.back().path, "Main", Orientation::landscape, Axis::vertical);
        });
    }

    [[nodiscard]] std::string file() const { return readFile(path); }

    TemporaryFolder folder;
    std::string path = folder.path() / "config.toml";
    MemoryDesktop desktop;
    MemoryStage stage;
    CountedFiles files;
    ManualFileWatch watch;
    ManualScheduler scheduler;
    MemoryCheckLog log;
    MemoryKeyEvents keys;
    MemorySettingsWindow window;
    ConfigStore store{path, files, watch, scheduler, log};
    DisplayRegistry displays{desktop};
    ModifierMonitor monitor{desktop, scheduler};
    HotkeyService hotkeys{desktop};
    OverlayController overlay{{.config = store,
                               .displays = displays,
                               .screens = desktop,
                               .stage = stage,
                               .activity = stage,
                               .scheduler = scheduler,
                               .log = log},
                              describe};
    SettingsController settings{{.config = store,
                                 .displays = displays,
                                 .overlay = overlay,
                                 .hotkeys = hotkeys,
                                 .host = desktop,
                                 .activity = stage,
                                 .screens = desktop,
                                 .scheduler = scheduler,
                                 .files = files,
                                 .keyEvents = keys,
                                 .log = log},
                                window.maker()};
};

const auto oneZone = TOMLWriter::write(configWith({landscape("Main", zone())}));
const auto twoZones = TOMLWriter::write(configWith({landscape("Main", columns(0.5, zone(), zone()))}));
const auto otherTwoZones = TOMLWriter::write(configWith({landscape("Main", rows(0.25, zone(), zone()))}));

void click(MemoryStageWindow& window, Point place) {
    window.move(place);
    window.press(place);
    window.release(place);
}

} // namespace

TEST(SettingsController, opensOnTheConfigurationInForceAndShowsItOnTheDisplays) {
    SettingsDesk desk(oneZone);
    desk.settings.show();
    EXPECT_TRUE(desk.window.isOpen);
    const auto& model = *desk.settings.model();
    EXPECT_EQ(model.editor().config(), *desk.store.current());
    EXPECT_EQ(model.selectedDisplay(), mainDisplay);
    EXPECT_TRUE(model.status().canRevert);
    EXPECT_THAT(desk.stage.shown(), ElementsAre("1", "-"));
    EXPECT_EQ(desk.stage.windows.front().below, MemorySettingsWindow::handle);
    desk.settings.show();
    EXPECT_EQ(desk.window.timesBroughtToFront, 1);
    desk.window.close();
    EXPECT_EQ(desk.settings.model(), nullptr);
    EXPECT_FALSE(desk.window.isOpen);
    EXPECT_THAT(desk.stage.shown(), IsEmpty());
    EXPECT_EQ(desk.files.writes, 0);
}

TEST(SettingsController, theFirstChoiceOfAFirstRunWritesTheFileAndNothingBeforeIt) {
    SettingsDesk desk;
    desk.settings.show();
    auto& model = *desk.settings.model();
    EXPECT_EQ(model.status(), (SettingsModel::Status{{mainDisplay, sideDisplay}, {}, false, false, {}, {}}));
    desk.scheduler.advance(10s);
    EXPECT_FALSE(desk.files.exists(desk.path));
    LayoutSettings::apply(LayoutPresets::all(Orientation::landscape).front(), model);
    EXPECT_THAT(desk.stage.shown(), ElementsAre("12", "-"));
    desk.scheduler.advance(300ms);
    KartoConfig expected = configWith({landscape("Main", columns(0.5, zone(), zone()))});
    expected.profileName = "default";
    EXPECT_EQ(desk.file(), TOMLWriter::write(expected));
}

TEST(SettingsController, editsAreShownAtOnceAndWrittenTogetherOnceTheyPause) {
    SettingsDesk desk(oneZone);
    desk.settings.show();
    for (const char* shown : {"12", "123", "1234"}) {
        desk.splitMain();
        EXPECT_THAT(desk.stage.shown(), ElementsAre(shown, "-"));
        desk.scheduler.advance(100ms);
    }
    desk.scheduler.advance(199ms);
    EXPECT_EQ(desk.files.writes, 0);
    desk.scheduler.advance(1ms);
    EXPECT_EQ(desk.files.writes, 1);
    EXPECT_EQ(desk.file(), TOMLWriter::write(desk.settings.model()->editor().config()));
    // The own write comes back.
    desk.notice();
    auto& model = *desk.settings.model();
    for (int step = 0; step < 3; ++step) {
        model.edit([](LayoutEditor& editor) { editor.undo(); });
    }
    desk.scheduler.advance(300ms);
    EXPECT_EQ(desk.file(), oneZone);
    model.edit([](LayoutEditor& editor) { editor.commitBoundaryDrag(); });
    desk.scheduler.advance(1s);
    EXPECT_EQ(desk.files.writes, 2);
}

TEST(SettingsController, closingAndQuittingWriteWhatWaits) {
    for (const bool isQuit : {false, true}) {
        SettingsDesk desk(oneZone);
        desk.settings.show();
        desk.splitMain();
        desk.scheduler.advance(100ms);
        isQuit ? desk.desktop.terminate() : desk.window.close();
        EXPECT_EQ(desk.file(), twoZones);
        desk.scheduler.advance(1s);
        EXPECT_EQ(desk.files.writes, 1);
    }
}

TEST(SettingsController, aFileThatCannotBeReadIsOnlyReplacedByStartingOver) {
    const std::string broken = "[profile\n";
    const auto& halves = LayoutPresets::all(Orientation::landscape).front();
    SettingsDesk desk(broken);
    desk.settings.show();
    EXPECT_EQ(desk.settings.model()->status().loadError, desk.store.lastError());
    EXPECT_EQ(LayoutSettings::content(desk.settings.model()->status()),
              LayoutSettings::Content::unreadableFile);
    LayoutSettings::apply(halves, *desk.settings.model());
    desk.scheduler.advance(1s);
    desk.window.close();
    EXPECT_EQ(desk.file(), broken);

    const std::string old = "[[profile.zone]]\nname = \"left\"\n";
    desk.edit(old);
    desk.settings.show();
    EXPECT_EQ(LayoutSettings::content(desk.settings.model()->status()),
              LayoutSettings::Content::legacyFormat);
    LayoutSettings::apply(halves, *desk.settings.model());
    desk.scheduler.advance(1s);
    EXPECT_EQ(desk.file(), old);
    LayoutSettings::startOver(halves, *desk.settings.model());
    desk.scheduler.advance(300ms);
    EXPECT_EQ(LayoutSettings::content(desk.settings.model()->status()), LayoutSettings::Content::editor);
    EXPECT_EQ(readConfig(desk.file()).value().displays,
              (std::vector{landscape("Main", columns(0.5, zone(), zone())),
                           portrait("Side", rows(0.5, zone(), zone()))}));
}

TEST(SettingsController, whatCannotBeWrittenIsSaidAndTheNextEditTriesAgain) {
    SettingsDesk desk(oneZone);
    desk.settings.show();
    auto& model = *desk.settings.model();
    desk.files.writeError = "No space left on device";
    desk.splitMain();
    desk.scheduler.advance(300ms);
    EXPECT_THAT(model.status().saveError.value_or(""),
                ::testing::AllOf(StartsWith("Layout not saved — "), HasSubstr("No space left on device")));
    EXPECT_THAT(desk.log.takeLines(),
                ElementsAre(StartsWith("settings: layout not saved — could not write")));
    EXPECT_TRUE(model.editor().canUndo());
    desk.files.writeError.reset();
    desk.splitMain();
    desk.scheduler.advance(300ms);
    EXPECT_FALSE(model.status().saveError);

    model.edit([](LayoutEditor& editor) { editor.setModifiers({"shift"}); });
    desk.scheduler.advance(300ms);
    EXPECT_THAT(model.status().saveError.value_or(""), StartsWith("Layout not saved — "));
    EXPECT_THAT(desk.log.takeLines(),
                ElementsAre(StartsWith("settings: layout not saved, it is invalid — ")));
}

TEST(SettingsController, revertGoesBackToTheLatestOpening) {
    SettingsDesk desk(oneZone);
    desk.settings.show();
    desk.splitMain();
    desk.window.close();
    desk.settings.show();
    auto& model = *desk.settings.model();
    for (int edit = 0; edit < 3; ++edit) {
        desk.splitMain();
        desk.scheduler.advance(300ms);
    }
    desk.splitMain();
    desk.window.events.revert();
    EXPECT_EQ(desk.file(), twoZones);
    EXPECT_FALSE(model.editor().canUndo());
    EXPECT_THAT(desk.stage.shown(), ElementsAre("12", "-"));
    const int writes = desk.files.writes;
    desk.scheduler.advance(1s);
    EXPECT_EQ(desk.files.writes, writes);

    desk.splitMain();
    desk.files.writeError = "Read-only file system";
    desk.window.events.revert();
    EXPECT_THAT(model.status().saveError.value_or(""), StartsWith("Revert failed — "));
    EXPECT_THAT(desk.log.takeLines(), ElementsAre(StartsWith("settings: revert failed — ")));
    EXPECT_TRUE(model.editor().canUndo());
}

TEST(SettingsController, editsOfTheFileAndChangesOfTheDisplaysAreFollowed) {
    SettingsDesk desk(oneZone);
    desk.settings.show();
    desk.splitMain();
    desk.edit(otherTwoZones);
    EXPECT_EQ(TOMLWriter::write(desk.settings.model()->editor().config()), otherTwoZones);
    EXPECT_FALSE(desk.settings.model()->editor().canUndo());
    desk.scheduler.advance(1s);
    EXPECT_EQ(desk.file(), otherTwoZones);
    desk.splitMain();
    desk.edit("[profile\n");
    EXPECT_FALSE(desk.settings.model()->status().loadError);
    desk.scheduler.advance(1s);
    EXPECT_EQ(readConfig(desk.file()).value(), desk.settings.model()->editor().config());
    desk.desktop.connect({desk.desktop.connected.back()});
    EXPECT_EQ(desk.settings.model()->status().displays, std::vector{sideDisplay});
    EXPECT_EQ(desk.settings.model()->selectedDisplay(), mainDisplay);
    EXPECT_THAT(desk.stage.shown(), ElementsAre("-"));
}

TEST(SettingsController, theRecorderStopsWhenTheKeyboardGoesElsewhere) {
    SettingsDesk desk(oneZone);
    const auto resign = [&] { desk.window.events.resignedKey(); };
    const auto deactivate = [&] { desk.stage.setActive(false); };
    const auto close = [&] { desk.window.close(); };
    for (const auto& leave : std::initializer_list<std::function<void()>>{resign, deactivate, close}) {
        desk.settings.show();
        int ends = 0;
        desk.settings.model()->shortcutRecorder().start([](ModifierSet) {}, [&] { ++ends; });
        leave();
        EXPECT_EQ(ends, 1);
        EXPECT_FALSE(desk.keys.isMonitored());
    }
}

TEST(SettingsController, aColourIsOneStepOnceItsPanelCloses) {
    SettingsDesk desk(oneZone);
    desk.settings.show();
    auto& model = *desk.settings.model();
    for (const double red : {0.0, 0.5, 1.0}) {
        desk.window.isColorPanelOpen = true;
        model.show(SettingsSection::overlay);
        model.edit([&](LayoutEditor& editor) {
            editor.setOverlayAppearanceLive({.color = {.red = red, .green = 0, .blue = 0}});
        });
    }
    EXPECT_FALSE(model.editor().canUndo());
    model.show(SettingsSection::layout);
    EXPECT_FALSE(desk.window.isColorPanelOpen);
    model.edit([](LayoutEditor& editor) { editor.undo(); });
    EXPECT_FALSE(model.editor().config().overlay);
    desk.window.isColorPanelOpen = true;
    model.edit([](LayoutEditor& editor) {
        OverlayAppearance slow;
        slow.delay = 1;
        editor.setOverlayAppearanceLive(slow);
    });
    desk.window.close();
    EXPECT_THAT(desk.file(), HasSubstr("delay = 1.0"));
}

TEST(SettingsController, zonesAreSelectedAndEditedOnTheDisplaysToo) {
    SettingsDesk desk(twoZones);
    desk.settings.show();
    auto& model = *desk.settings.model();
    desk.stage.setActive(true);
    click(desk.stage.windows.front(), {750, 200});
    EXPECT_EQ(model.selectedZonePath(), NodePath{{Branch::second}});
    EXPECT_EQ(model.section(), SettingsSection::layout);
    EXPECT_EQ(desk.window.timesBroughtToFront, 1);
    EXPECT_THAT(desk.stage.shown(), ElementsAre("1[2]", "-"));
    click(desk.stage.windows.back(), {5, 5});
    EXPECT_EQ(model.selectedDisplay(), mainDisplay);
    EXPECT_EQ(desk.window.timesBroughtToFront, 2);

    auto& left = desk.stage.windows.front();
    left.move({500, 100});
    left.press({500, 100});
    left.drag({250, 100});
    left.release({250, 100});
    EXPECT_EQ(model.editor().history().currentIndex(), 1U);
    desk.scheduler.advance(300ms);
    EXPECT_EQ(desk.files.writes, 1);
    EXPECT_THAT(desk.file(), HasSubstr("at = 0.25"));
    model.edit([](LayoutEditor& editor) { editor.undo(); });
    desk.scheduler.advance(300ms);
    EXPECT_EQ(desk.file(), twoZones);
}

// Whatever is done, in whatever order: once all is quiet file, store, editor and displays agree.
RC_GTEST_PROP(SettingsController, fileStoreEditorAndDisplaysAgreeInTheEnd, ()) {
    SettingsDesk desk(oneZone);
    desk.settings.show();
    const auto layout = [] { return configWith({landscape("Main", *trees())}); };
    for (const int step : *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 9))) {
        if (desk.settings.model() == nullptr) {
            desk.settings.show();
        }
        auto& model = *desk.settings.model();
        switch (step) {
        case 0:
        case 1: desk.splitMain(); break;
        case 2: model.edit([](LayoutEditor& editor) { editor.undo(); }); break;
        case 3: model.edit([](LayoutEditor& editor) { editor.redo(); }); break;
        case 4: desk.window.events.revert(); break;
        case 5: desk.edit(TOMLWriter::write(layout())); break;
        case 6: desk.window.close(); break;
        case 7:
            model.edit([](LayoutEditor& editor) {
                editor.moveBoundaryLive({}, "Main", Orientation::landscape, 0.125);
            });
            break;
        default: desk.scheduler.advance(*rc::gen::element(10ms, 150ms, 300ms)); break;
        }
    }
    desk.scheduler.advance(1s);
    desk.notice();
    desk.settings.show();
    const auto& config = desk.settings.model()->editor().config();
    RC_ASSERT(*desk.store.current() == config);
    RC_ASSERT(desk.file() == TOMLWriter::write(config));
    std::string shown;
    for (std::size_t number = 1; number <= config.zones().size(); ++number) {
        shown += std::to_string(number);
    }
    RC_ASSERT(desk.stage.shown().front() == shown);
}

} // namespace karto::testing
