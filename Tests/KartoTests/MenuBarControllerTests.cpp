#include "Karto/MenuBarController.h"

#include "Karto/Adapters/DisplayRegistry.h"
#include "Karto/AppInfo.h"
#include "Support/FixedConfig.h"
#include "Support/ManualUpdater.h"
#include "Support/MemoryCheckLog.h"
#include "Support/MemoryDesktop.h"
#include "Support/MemoryLoginItem.h"
#include "Support/MemoryStatusItem.h"
#include "Support/Trees.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <optional>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;

// A line as a person sees it: "[x]" before one that is on, parentheses around one that cannot be chosen, "--"
// for a separator, the key equivalent at the end.
std::vector<std::string> shown(const Menu& menu) {
    std::vector<std::string> lines;
    lines.reserve(menu.size());
    for (const auto& item : menu) {
        std::string line = item.isSeparator ? "--" : item.text;
        if (item.isChecked) {
            line.insert(0, *item.isChecked ? "[x] " : "[ ] ");
        }
        if (!item.isEnabled) {
            line = fmt::format("({})", line);
        }
        lines.push_back(item.keyEquivalent.empty() ? line : fmt::format("{} ^{}", line, item.keyEquivalent));
    }
    return lines;
}

struct MenuBarControllerTest : ::testing::Test {
    MenuBarControllerTest() {
        connect({"Desk"});
        controller.install();
    }

    void connect(const std::vector<std::string>& names) {
        std::vector<Screen> screens;
        screens.reserve(names.size());
        for (const auto& name : names) {
            screens.push_back(screen(name, rectAt(0, 0, 800, 600)));
        }
        desktop.connect(screens);
    }

    void claimShortcuts() {
        hotkeys.registerHotkeys(config.hotkeyModifiers(), config.commandKeys(), [](const KartoCommand&) {});
    }

    // What is told above the actions.
    [[nodiscard]] std::vector<std::string> status() const {
        auto lines = shown(item.menu());
        lines.erase(std::ranges::find(lines, "--"), lines.end());
        return lines;
    }

    MemoryDesktop desktop;
    FixedConfig config;
    DisplayRegistry displays{desktop};
    HotkeyService hotkeys{desktop};
    MemoryLoginItem loginService;
    LoginItem loginItem{loginService};
    ManualUpdater engine;
    std::optional<UpdaterService> updater{engine};
    MemoryStatusItem item;
    MemoryCheckLog log;
    MenuBarController controller{{.config = config,
                                  .displays = displays,
                                  .hotkeys = hotkeys,
                                  .loginItem = loginItem,
                                  .updater = *updater,
                                  .host = desktop,
                                  .item = item,
                                  .log = log},
                                 [] {}};
};

KartoConfig fiveZones() {
    return configWith(
        {landscape("Desk", equalColumns(3, zone())), landscape("Away", equalColumns(2, zone()))});
}

constexpr auto nothingActive =
    "(No zones are active: none of the 5 zone(s) in profile \"Test\" match a connected display. Nothing will "
    "move until a zone's display name and orientation match one Karto can see — open Settings…, where the "
    "Layout section lists them and fills the name in for you.)";

constexpr auto twoDesks =
    "(2 connected displays are all called \"Desk\" (landscape). Zones bind by name, so Karto cannot tell "
    "them "
    "apart: every zone for that name lands on one of them and the layout on the others is wrong.)";

} // namespace

TEST_F(MenuBarControllerTest, aFirstRunHasNothingToTellButTheWayToTheSettings) {
    EXPECT_THAT(shown(item.menu()),
                ElementsAre("(No layout yet — open Settings… to make one.)", "--", "Settings… ^,",
                            "[ ] Start at Login", "--", "About Karto", "Check for Updates…", "Quit ^q"));
}

TEST_F(MenuBarControllerTest, tellsWhatStandsInTheWayOfTheZones) {
    config.set(fiveZones());
    EXPECT_THAT(status(), ElementsAre("(Profile \"Test\" — 3 of 5 zone(s) active)"));
    connect({"Desk", "Desk"});
    EXPECT_THAT(status(), ElementsAre("(Profile \"Test\" — 3 of 5 zone(s) active)", twoDesks));
    connect({"Elsewhere"});
    EXPECT_THAT(status(), ElementsAre(nothingActive));
    config.error = "line 3: that is no table";
    EXPECT_THAT(status(), ElementsAre("(Config error: line 3: that is no table)"));
}

TEST_F(MenuBarControllerTest, tellsFirstWhatStandsInTheWayOfTheShortcuts) {
    constexpr std::uint32_t tKey = 17;
    constexpr std::uint32_t fKey = 3;
    desktop.heldByOthers = {{.code = tKey}, {.code = fKey}};
    claimShortcuts();
    EXPECT_EQ(status().front(),
              "(Another app is already using these shortcuts: Tidy, Fill the display. Close "
              "it or change its shortcuts to free them up.)");
    desktop.deliversPresses = false;
    claimShortcuts();
    EXPECT_THAT(status(), ElementsAre("(Shortcuts aren't working at all. Restart Karto to try again; if it "
                                      "keeps happening, please report it.)",
                                      "(No layout yet — open Settings… to make one.)"));
}

TEST_F(MenuBarControllerTest, startAtLoginIsSwitchedAndLogged) {
    const auto line = [this] { return shown(item.menu()).at(3); };
    item.click("Start at Login");
    EXPECT_EQ(line(), "[x] Start at Login");
    item.click("Start at Login");
    loginService.failure = "Permission denied";
    item.click("Start at Login");
    loginService.current = LoginItemStatus::enabled;
    item.click("Start at Login");
    EXPECT_THAT(log.takeLines(), ElementsAre("start at login: turned on", "start at login: turned off",
                                             "start at login: could not turn on — Permission denied",
                                             "start at login: could not turn off — Permission denied"));
    loginService.current = LoginItemStatus::notFound;
    EXPECT_EQ(line(), "[ ] Start at Login");
    loginService.current = LoginItemStatus::requiresApproval;
    EXPECT_EQ(line(), "Start at Login — blocked in System Settings");
    item.click("Start at Login — blocked in System Settings");
    EXPECT_EQ(loginService.settingsOpened, 1);
    EXPECT_THAT(log.lines, ElementsAre());
}

TEST_F(MenuBarControllerTest, anUpdateIsMarkedUntilThePersonAttendsToIt) {
    updater->onPendingVersionChange = [this] { controller.refresh(); };
    const StatusItemFace unmarked{.accessibleLabel = "Karto"};
    EXPECT_EQ(item.face, unmarked);
    for (const auto attend :
         {&UpdaterDelegate::didReceiveUserAttention, &UpdaterDelegate::willFinishUpdateSession}) {
        item.menuUpdates = 0;
        engine.find("2.1");
        engine.find("2.1");
        EXPECT_EQ(item.face, (StatusItemFace{.accessibleLabel = "Karto — update to 2.1 available",
                                             .hasUpdateMark = true}));
        EXPECT_EQ(item.menuUpdates, 1);
        item.click("Update to 2.1…");
        (*engine.delegate.*attend)();
        (*engine.delegate.*attend)();
        EXPECT_EQ(item.face, unmarked);
        EXPECT_EQ(item.menuUpdates, 2);
        item.click("Check for Updates…");
    }
    EXPECT_EQ(engine.checks, 4);
    engine.delegate->willHandleShowingUpdate(true, "2.2");
    EXPECT_EQ(item.face, unmarked);
}

TEST(UpdaterService, theReminderMayOutliveIt) {
    ManualUpdater engine;
    { const UpdaterService gone(engine); }
    EXPECT_TRUE(engine.delegate->supportsGentleScheduledUpdateReminders());
    engine.find("2.1");
    engine.delegate->didReceiveUserAttention();
}

TEST(AppInfo, aBundleSaysWhenAndFromWhichCommitItWasBuilt) {
    EXPECT_EQ(AppInfo::buildDescription("2026-11-23", "1a2b3c4"), "Built 2026-11-23 · 1a2b3c4");
    EXPECT_EQ(AppInfo::buildDescription("2026-11-23", std::nullopt), "Built 2026-11-23");
    EXPECT_EQ(AppInfo::buildDescription(std::nullopt, "1a2b3c4"), "Unbundled build — run scripts/bundle.sh");
}

} // namespace karto::testing
