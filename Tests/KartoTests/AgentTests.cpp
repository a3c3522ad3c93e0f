#include "Karto/Agent.h"

#include "Karto/Platform/Instance.h"
#include "Karto/Platform/Linux/PosixFileSystem.h"
#include "Support/ManualFileWatch.h"
#include "Support/ManualScheduler.h"
#include "Support/ManualUpdater.h"
#include "Support/MemoryCheckLog.h"
#include "Support/MemoryDesktop.h"
#include "Support/MemoryKeyEvents.h"
#include "Support/MemoryLoginItem.h"
#include "Support/MemorySettingsWindow.h"
#include "Support/MemoryStage.h"
#include "Support/MemoryStatusItem.h"
#include "Support/TemporaryFolder.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr Rect mainFrame{0, 0, 1000, 800};
constexpr std::uint32_t oneKey = 18;
constexpr std::uint32_t tKey = 17;
constexpr std::uint32_t yKey = 16;

struct ManualInstance final : Instance {
    Observers<> starts;

    Registration observeFurtherStarts(std::function<void()> onStart) override {
        return starts.add(std::move(onStart));
    }

    void giveWay() override { hasGivenWay = true; }

    bool hasGivenWay = false;
};

class AgentTest : public ::testing::Test {
protected:
    AgentTest() {
        desktop.connected = {screen("Main", mainFrame)};
        std::filesystem::create_directories(path.parent_path());
    }

    // The lines logged since the last time.
    std::string report() { return fmt::format("{}", fmt::join(log.takeLines(), "\n")); }

    // Writes the file and has the program notice.
    std::string edit(const std::string& text) {
        writeFile(path, text);
        watch.observers.notify();
        scheduler.advance(std::chrono::seconds(1));
        return report();
    }

    TemporaryFolder folder;
    std::filesystem::path path = folder.path() / ConfigStore::relativePath;
    MemoryDesktop desktop;
    MemoryStage stage;
    PosixFileSystem files;
    ManualFileWatch watch;
    ManualScheduler scheduler;
    MemoryCheckLog log;
    MemoryStatusItem item;
    MemoryLoginItem loginItem;
    ManualInstance instance;
    MemoryKeyEvents keyEvents;
    MemorySettingsWindow settings;
    ManualUpdater updater;
    Agent agent{{.host = desktop,
                 .scheduler = scheduler,
                 .files = files,
                 .fileWatch = watch,
                 .accessibility = desktop,
                 .screens = desktop,
                 .hotKeyCenter = desktop,
                 .modifierEvents = desktop,
                 .keyEvents = keyEvents,
                 .stage = stage,
                 .activity = stage,
                 .statusItem = item,
                 .loginItem = loginItem,
                 .instance = instance,
                 .updater = updater},
                {.overlay = [](const auto&, const StageStyle&) { return pictureNamed("zones"); },
                 .switcher = [](const auto&, const StageStyle&) { return pictureNamed("panel"); },
                 .settings = [this](auto& model, auto events,
                                    const auto&) { return settings.make(model, std::move(events)); }},
                log,
                folder.path().string()};
};

const std::string oneZone = R"([profile]
name = "home"
[[display]]
name = "Main"
orientation = "landscape"
)";

} // namespace

TEST_F(AgentTest, explainsWhatIsMissingAndOffersToOpenTheSettings) {
    desktop.distrust = {.cause = "no window manager is running",
                        .explanation = "No window manager is running."};
    EXPECT_FALSE(agent.start());
    EXPECT_EQ(desktop.settingsOpened, 1);
    EXPECT_EQ(report(),
              R"(startup: Accessibility permission not granted, showing the onboarding alert and quitting
startup: no window manager is running)");
    desktop.answer = 1;
    EXPECT_FALSE(agent.start());
    EXPECT_EQ(desktop.settingsOpened, 1);
    const Alert alert{.message = "Karto needs permission to control windows",
                      .informativeText =
                          R"(Open System Settings → Privacy & Security → Accessibility and switch Karto on.

If Karto is not in that list, click the "+" button below it and choose Karto in your Applications folder.

Karto quits now — it does not pick the permission up while running. Start it again once you have granted it.

No window manager is running.)",
                      .buttons = {"Open Settings", "Quit"}};
    EXPECT_THAT(desktop.alerts, ElementsAre(alert, alert));
    EXPECT_TRUE(instance.hasGivenWay);
}

TEST_F(AgentTest, aFirstRunClaimsTheDefaultsAndSaysThatThereIsNoFile) {
    ASSERT_TRUE(agent.start());
    EXPECT_EQ(report(),
              R"(hotkey registration: all commands registered for modifiers [shift+command+control+option]
startup: no config loaded — no config file yet)");
    EXPECT_THAT(desktop.printed,
                ElementsAre(R"(Karto is running. The hyper key is shift+command+control+option.
  hyper + →  Next zone
  hyper + ←  Previous zone
  hyper + ↑  Expand to next zone
  hyper + ↓  Shrink to previous zone
  hyper + T  Tidy
  hyper + F  Fill the display
  hyper + A  Snap to its zone
  hyper + ⇥  Cycle windows in the zone
  hyper + 1…9  Move a window to its zone)"));
}

TEST_F(AgentTest, aChangedFileIsReportedAndItsShortcutsAreClaimed) {
    ASSERT_TRUE(agent.start());
    report();
    EXPECT_EQ(edit(oneZone + R"([hotkeys]
modifiers = ["option", "shift"]
[hotkeys.keys]
tidy = "y"
nextVariant = "k"
previousVariant = "p"
expandZone = "j"
)"),
              R"(config reload: config loaded, profile "home", zones 1, ring 1, displays [Main]
config reload: hotkey "nextVariant" is the former name of "expandZone" and was read as it — that key now expands or shrinks the window instead of cycling size variants; the next save writes the new name
config reload: the hotkey table names both "nextVariant" and "expandZone" — the new name is the one that binds, and the old line goes on the next save
config reload: hotkey "previousVariant" is the former name of "shrinkZone" and was read as it — that key now expands or shrinks the window instead of cycling size variants; the next save writes the new name
hotkey registration (reload): all commands registered for modifiers [shift+option])");
    constexpr auto mask = HotKeyMask::shift | HotKeyMask::option;
    EXPECT_FALSE(desktop.press({.code = tKey, .modifierMask = mask}));
    EXPECT_TRUE(desktop.press({.code = yKey, .modifierMask = mask}));
    report();

    ASSERT_TRUE(agent.store().save(*agent.store().current()));
    watch.observers.notify();
    EXPECT_EQ(report(), R"(config reload: config loaded, profile "home", zones 1, ring 1, displays [Main]
hotkey registration (reload): all commands registered for modifiers [shift+option])");
}

TEST_F(AgentTest, reportsWhatStandsInTheWay) {
    writeFile(path, oneZone);
    auto screens = std::vector(2, desktop.connected.front());
    screens.push_back(screen("", mainFrame));
    desktop.connect(screens);
    desktop.heldByOthers = {{.code = tKey}, {.code = oneKey}};
    ASSERT_TRUE(agent.start());
    EXPECT_EQ(
        report(),
        R"(hotkey registration: failed to claim [KartoCore.KartoCommand.tidy, KartoCore.KartoCommand.moveToZone(1)] for modifiers [shift+command+control+option]
startup: config loaded, profile "home", zones 1, ring 1, displays [Main, Main, (unnamed)]
startup: 2 displays share the name "Main" (landscape) — every zone for it resolves onto one of them)");

    desktop.heldByOthers.clear();
    desktop.changeKeyboard();
    EXPECT_EQ(report(), "hotkey registration (keyboard change): all commands registered for modifiers "
                        "[shift+command+control+option]");
    // The key has moved to where another program holds it.
    desktop.heldByOthers = {{.code = tKey}};
    desktop.changeKeyboard();
    EXPECT_THAT(report(), HasSubstr("failed to claim [KartoCore.KartoCommand.tidy] for"));

    desktop.connect({});
    EXPECT_THAT(edit(oneZone + "\n"),
                StartsWith(
                    R"(config reload: config loaded, profile "home", zones 1, ring 0, displays []
config reload: RING IS EMPTY — no zone matches a connected display, no hotkey will move anything
)"));
}

TEST_F(AgentTest, theMenuFollowsTheConfigurationAndAFurtherStartOpensTheSettings) {
    EXPECT_FALSE(item.isShown());
    ASSERT_TRUE(agent.start());
    EXPECT_EQ(item.menu().front().text, "No layout yet — open Settings… to make one.");
    edit(oneZone);
    EXPECT_EQ(item.menuUpdates, 1);
    EXPECT_EQ(item.menu().front().text, "Profile \"home\" — 1 of 1 zone(s) active");
    EXPECT_EQ(settings.model->editor().config(), *agent.store().current());
    settings.close();
    instance.starts.notify();
    EXPECT_TRUE(settings.isOpen);
}

TEST_F(AgentTest, startsWithADefectiveFileAndNoPresses) {
    writeFile(path, "[profile]\n");
    desktop.deliversPresses = false;
    ASSERT_TRUE(agent.start());
    EXPECT_EQ(report(), "hotkey registration: event handler installation FAILED, no hotkey will ever fire\n"
                        "startup: no config loaded — " +
                            agent.store().lastError().value_or(""));
}

} // namespace karto::testing
