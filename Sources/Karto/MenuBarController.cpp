#include "Karto/MenuBarController.h"

#include "Karto/AppInfo.h"
#include "Karto/MenuBarIcon.h"
#include "KartoCore/ZoneResolver.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace karto {

namespace {

MenuItem status(std::string text) { return {.text = std::move(text), .isEnabled = false}; }

MenuItem separator() { return {.isSeparator = true}; }

std::string namesOf(const std::vector<KartoCommand>& commands) {
    std::vector<std::string> names;
    names.reserve(commands.size());
    std::ranges::transform(commands, std::back_inserter(names), &KartoCommand::displayName);
    return fmt::format("{}", fmt::join(names, ", "));
}

std::string zoneStatus(const KartoConfig& config, const std::vector<DisplayInfo>& displays) {
    const auto active = ZoneResolver::resolve(config, displays).size();
    const auto total = config.zones().size();
    if (active > 0) {
        return fmt::format("Profile \"{}\" — {} of {} zone(s) active", config.profileName, active, total);
    }
    return fmt::format(
        "No zones are active: none of the {} zone(s) in profile \"{}\" match a connected display. Nothing "
        "will move until a zone's display name and orientation match one Karto can see — open Settings…, "
        "where the Layout section lists them and fills the name in for you.",
        total, config.profileName);
}

std::string text(const DisplayCollision& collision) {
    return fmt::format(
        "{} connected displays are all called \"{}\" ({}). Zones bind by name, so Karto cannot tell them "
        "apart: every zone for that name lands on one of them and the layout on the others is wrong.",
        collision.count, collision.name, rawName(collision.orientation));
}

} // namespace

MenuBarController::MenuBarController(const Services& services, std::function<void()> openSettings)
    : services_(services)
    , openSettings_(std::move(openSettings)) {}

void MenuBarController::install() {
    item_ = services_.item.install(MenuBarIcon::draw, [this] { return menu(); });
    showUpdateMark();
}

void MenuBarController::refresh() {
    if (item_) {
        services_.item.updateMenu();
        showUpdateMark();
    }
}

Menu MenuBarController::menu() {
    Menu menu;
    addShortcutStatus(menu);
    addConfigurationStatus(menu);
    menu.push_back(separator());
    addActions(menu);
    return menu;
}

void MenuBarController::addShortcutStatus(Menu& menu) const {
    const auto& failed = services_.hotkeys.failedRegistrations();
    if (services_.hotkeys.eventHandlerInstallationFailed()) {
        menu.push_back(status("Shortcuts aren't working at all. Restart Karto to try again; if it keeps "
                              "happening, please report it."));
    } else if (!failed.empty()) {
        menu.push_back(status(fmt::format("Another app is already using these shortcuts: {}. Close it or "
                                          "change its shortcuts to free them up.",
                                          namesOf(failed))));
    }
}

void MenuBarController::addConfigurationStatus(Menu& menu) const {
    if (const auto& error = services_.config.lastError()) {
        menu.push_back(status("Config error: " + *error));
        return;
    }
    const auto config = services_.config.current();
    if (!config) {
        menu.push_back(status("No layout yet — open Settings… to make one."));
        return;
    }
    const auto& displays = services_.displays.displays();
    menu.push_back(status(zoneStatus(*config, displays)));
    for (const auto& collision : ZoneResolver::collisions(*config, displays)) {
        menu.push_back(status(text(collision)));
    }
}

void MenuBarController::addActions(Menu& menu) {
    menu.push_back({.text = "Settings…", .keyEquivalent = ",", .action = callbacks_.wrap([this] {
                        this->openSettings();
                    })});
    menu.push_back(loginItemLine());
    menu.push_back(separator());
    menu.push_back({.text = "About Karto", .action = callbacks_.wrap([this] { showAbout(); })});
    menu.push_back(updateLine());
    menu.push_back({.text = "Quit", .keyEquivalent = "q", .action = callbacks_.wrap([this] {
                        services_.host.terminate();
                    })});
}

MenuItem MenuBarController::loginItemLine() {
    const auto status = services_.loginItem.status();
    if (status == LoginItemStatus::requiresApproval) {
        return {.text = "Start at Login — blocked in System Settings",
                .action = callbacks_.wrap([this] { openLoginItemSettings(); })};
    }
    return {.text = "Start at Login",
            .isChecked = status == LoginItemStatus::enabled,
            .action = callbacks_.wrap([this] { toggleLoginItem(); })};
}

MenuItem MenuBarController::updateLine() {
    const auto& version = services_.updater.pendingVersion();
    return {.text = version ? "Update to " + *version + "…" : "Check for Updates…",
            .action = callbacks_.wrap([this] { checkForUpdatesAction(); })};
}

void MenuBarController::toggleLoginItem() {
    const bool turnsOn = services_.loginItem.status() != LoginItemStatus::enabled;
    const auto* const state = turnsOn ? "on" : "off";
    if (const auto problem = services_.loginItem.setEnabled(turnsOn)) {
        services_.log.append(fmt::format("start at login: could not turn {} — {}", state, *problem));
    } else {
        services_.log.append(fmt::format("start at login: turned {}", state));
    }
}

void MenuBarController::openLoginItemSettings() { services_.loginItem.openSettings(); }

void MenuBarController::showAbout() {
    services_.host.showAbout({.applicationName = "Karto", .credits = AppInfo::buildDescription()});
}

void MenuBarController::checkForUpdatesAction() { services_.updater.engine().checkForUpdates(); }

void MenuBarController::showUpdateMark() {
    const auto& version = services_.updater.pendingVersion();
    services_.item.setFace(
        {.accessibleLabel = version ? "Karto — update to " + *version + " available" : "Karto",
         .hasUpdateMark = version.has_value()});
}

} // namespace karto
