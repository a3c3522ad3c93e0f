#include "Karto/Startup.h"

#include "Karto/Adapters/ConfigStore.h"
#include "Karto/Adapters/DisplayRegistry.h"
#include "Karto/Coordinator.h"
#include "Karto/Platform/Linux/PosixFileSystem.h"
#include "Support/ManualScheduler.h"
#include "Support/MemoryCheckLog.h"
#include "Support/MemoryDesktop.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Rect mainFrame{.x = 0, .y = 0, .width = 1000, .height = 800};
constexpr std::uint32_t oneKey = 18;
constexpr std::uint32_t tKey = 17;
constexpr std::uint32_t yKey = 16;

struct ManualFileWatch final : FileWatch {
    Observers<> observers;

    std::optional<Registration> watch(const std::string& /*path*/, std::function<void()> onChange) override {
        return observers.add(std::move(onChange));
    }
};

class StartupTest : public ::testing::Test {
protected:
    StartupTest() { desktop_.connected = {{.name = "Main", .frame = mainFrame, .visibleFrame = mainFrame}}; }

    // Writes the file and has the program notice; the lines logged since the last time.
    std::vector<std::string> edit(const std::string& text) {
        writeFile(path_, text);
        watch_.observers.notify();
        scheduler_.advance(std::chrono::seconds(1));
        return log_.takeLines();
    }

    TemporaryFolder folder_;
    std::string path_ = folder_.path() / "config.toml";
    MemoryDesktop desktop_;
    PosixFileSystem files_;
    ManualFileWatch watch_;
    ManualScheduler scheduler_;
    MemoryCheckLog log_;
    WindowService windows_{desktop_};
    ConfigStore store_{path_, files_, watch_, scheduler_, log_};
    DisplayRegistry displays_{desktop_};
    Coordinator coordinator_{windows_, displays_, store_, log_};
    HotkeyService hotkeys_{desktop_};
    Startup startup_{{.host = desktop_,
                      .hotKeyCenter = desktop_,
                      .store = store_,
                      .displays = displays_,
                      .coordinator = coordinator_,
                      .hotkeys = hotkeys_,
                      .log = log_}};
};

const std::string allFour = "shift+command+control+option";
const std::string oneZone =
    "[profile]\nname = \"home\"\n[[display]]\nname = \"Main\"\norientation = \"landscape\"\n";

} // namespace

TEST_F(StartupTest, explainsWhatIsMissingAndOffersToOpenTheSettings) {
    EXPECT_TRUE(isTrustedOrExplains(windows_, desktop_, log_));
    desktop_.distrust = "No window manager is running.";
    EXPECT_FALSE(isTrustedOrExplains(windows_, desktop_, log_));
    EXPECT_EQ(desktop_.settingsOpened, 1);
    desktop_.answer = 1;
    EXPECT_FALSE(isTrustedOrExplains(windows_, desktop_, log_));
    EXPECT_EQ(desktop_.settingsOpened, 1);
    const Alert alert{.message = "Karto needs permission to control windows",
                      .informativeText =
                          "Open System Settings → Privacy & Security → Accessibility and switch Karto on.\n\n"
                          "If Karto is not in that list, click the \"+\" button below it and choose Karto in "
                          "your Applications "
                          "folder.\n\n"
                          "Karto quits now — it does not pick the permission up while running. Start it "
                          "again once you have "
                          "granted it.\n\nNo window manager is running.",
                      .buttons = {"Open Settings", "Quit"}};
    EXPECT_THAT(desktop_.alerts, ElementsAre(alert, alert));
    log_.lines.resize(2);
    EXPECT_THAT(log_.lines,
                ElementsAre("startup: Accessibility permission not granted, showing the onboarding "
                            "alert and quitting",
                            "startup: No window manager is running."));
}

TEST_F(StartupTest, aFirstRunClaimsTheDefaultsAndSaysThatThereIsNoFile) {
    startup_.run();
    EXPECT_THAT(log_.lines,
                ElementsAre("hotkey registration: all commands registered for modifiers [" + allFour + "]",
                            "startup: no config loaded — no config file yet"));
    EXPECT_THAT(desktop_.printed, ElementsAre("Karto is running. The hyper key is " + allFour +
                                              ".\n"
                                              "  hyper + →  Next zone\n"
                                              "  hyper + ←  Previous zone\n"
                                              "  hyper + ↑  Expand to next zone\n"
                                              "  hyper + ↓  Shrink to previous zone\n"
                                              "  hyper + T  Tidy\n"
                                              "  hyper + F  Fill the display\n"
                                              "  hyper + A  Snap to its zone\n"
                                              "  hyper + ⇥  Cycle windows in the zone\n"
                                              "  hyper + 1…9  Move a window to its zone"));
}

TEST_F(StartupTest, aShortcutMovesTheFocusedWindow) {
    writeFile(path_, oneZone);
    startup_.run();
    const auto window =
        desktop_.open(desktop_.launch("Editor"), {.frame = {.x = 10, .y = 20, .width = 30, .height = 40}});
    desktop_.focus(window);
    EXPECT_TRUE(desktop_.press({.code = oneKey}));
    EXPECT_EQ(desktop_.window(window).frame, mainFrame);
}

TEST_F(StartupTest, aChangedFileIsReportedAndItsShortcutsAreClaimed) {
    startup_.run();
    log_.takeLines();
    EXPECT_THAT(
        edit(oneZone + "[hotkeys]\nmodifiers = [\"option\", \"shift\"]\n[hotkeys.keys]\ntidy = "
                       "\"y\"\nnextVariant = \"k\"\n"
                       "expandZone = \"j\"\n"),
        ElementsAre("config reload: config loaded, profile \"home\", zones 1, ring 1, displays [Main]",
                    "config reload: hotkey \"nextVariant\" is the former name of \"expandZone\" and was read "
                    "as it — that "
                    "key now expands or shrinks the window instead of cycling size variants; the next save "
                    "writes the "
                    "new name",
                    "config reload: the hotkey table names both \"nextVariant\" and \"expandZone\" — the new "
                    "name is the "
                    "one that binds, and the old line goes on the next save",
                    "hotkey registration (reload): all commands registered for modifiers [shift+option]"));
    constexpr auto mask = HotKeyMask::shift | HotKeyMask::option;
    EXPECT_FALSE(desktop_.press({.code = tKey, .modifierMask = mask}));
    EXPECT_TRUE(desktop_.press({.code = yKey, .modifierMask = mask}));
    log_.takeLines();

    EXPECT_THAT(edit("[profile]\n"), ElementsAre(::testing::StartsWith("config reload: config loaded"),
                                                 ::testing::_, ::testing::_));
    ASSERT_TRUE(store_.save(*store_.current()));
    watch_.observers.notify();
    EXPECT_THAT(log_.lines, ElementsAre(::testing::StartsWith("config reload: config loaded"),
                                        ::testing::StartsWith("hotkey registration (reload): all")));
}

TEST_F(StartupTest, reportsWhatStandsInTheWay) {
    writeFile(path_, oneZone);
    auto twin = desktop_.connected.front();
    desktop_.connect({twin, twin, {.name = "", .frame = mainFrame, .visibleFrame = mainFrame}});
    desktop_.heldByOthers = {{.code = tKey}, {.code = oneKey}};
    startup_.run();
    EXPECT_THAT(
        log_.takeLines(),
        ElementsAre(
            "hotkey registration: failed to claim [KartoCore.KartoCommand.tidy, "
            "KartoCore.KartoCommand.moveToZone(1)] for modifiers [" +
                allFour + "]",
            "startup: config loaded, profile \"home\", zones 1, ring 1, displays [Main, Main, (unnamed)]",
            "startup: 2 displays share the name \"Main\" (landscape) — every zone for it resolves onto "
            "one of them"));
    desktop_.connect({});
    EXPECT_THAT(
        edit(oneZone + "\n"),
        ElementsAre("config reload: config loaded, profile \"home\", zones 1, ring 0, displays []",
                    "config reload: RING IS EMPTY — no zone matches a connected display, no hotkey will move "
                    "anything",
                    ::testing::StartsWith("hotkey registration (reload): failed to claim")));

    desktop_.heldByOthers.clear();
    desktop_.changeKeyboard();
    EXPECT_THAT(log_.lines,
                ElementsAre("hotkey registration (keyboard change): all commands registered for modifiers [" +
                            allFour + "]"));
    EXPECT_THAT(hotkeys_.failedRegistrations(), IsEmpty());
}

TEST_F(StartupTest, startsWithADefectiveFileAndNoPresses) {
    writeFile(path_, "[profile]\n");
    desktop_.deliversPresses = false;
    startup_.run();
    EXPECT_THAT(
        log_.lines,
        ElementsAre("hotkey registration: event handler installation FAILED, no hotkey will ever fire",
                    "startup: no config loaded — " + store_.lastError().value()));
}

} // namespace karto::testing
