#pragma once
// The status item and its menu: what stands in the way of the shortcuts and the zones, then what a person can
// do. The menu shows the state of the moment it opens.

#include "Karto/Adapters/ConfigProviding.h"
#include "Karto/Adapters/DisplayProviding.h"
#include "Karto/Adapters/HotkeyService.h"
#include "Karto/Adapters/LoginItem.h"
#include "Karto/Adapters/UpdaterService.h"
#include "Karto/Log.h"
#include "Karto/Platform/ApplicationHost.h"
#include "Karto/Platform/StatusItem.h"
#include "Karto/Platform/WeakCallbacks.h"

#include <functional>

namespace karto {

class MenuBarController {
public:
    // All of them outlive this object.
    struct Services {
        const ConfigProviding& config;
        DisplayProviding& displays;
        const HotkeyService& hotkeys;
        LoginItem& loginItem;
        UpdaterService& updater;
        ApplicationHost& host;
        StatusItem& item;
        CheckLog& log;
    };

    // openSettings: what "Settings…" does.
    MenuBarController(const Services& services, std::function<void()> openSettings);

    // Shows the status item; once.
    void install();
    // Shows what has changed; nothing before install().
    void refresh();

    [[nodiscard]] Menu menu();

    void openSettings() { openSettings_(); }

    void toggleLoginItem();
    void openLoginItemSettings();
    void showAbout();
    void checkForUpdatesAction();

private:
    void addShortcutStatus(Menu& menu) const;
    void addConfigurationStatus(Menu& menu) const;
    void addActions(Menu& menu);
    [[nodiscard]] MenuItem loginItemLine();
    [[nodiscard]] MenuItem updateLine();
    void showUpdateMark();

    Services services_;
    std::function<void()> openSettings_;
    WeakCallbacks callbacks_;
    Registration item_;
};

} // namespace karto
