#include "Karto/Settings/GeneralSettings.h"

#include "Karto/Adapters/LoginItem.h"
#include "Karto/Adapters/UpdaterService.h"
#include "Karto/Adapters/WindowService.h"
#include "Karto/Log.h"

namespace karto {

LoginItemStatus GeneralSettings::loginItemStatus() const { return services_.loginItem.status(); }

void GeneralSettings::setStartAtLogin(bool isEnabled) {
    loginItemFailure_ = services_.loginItem.setEnabled(isEnabled);
    if (loginItemFailure_) {
        services_.log.append("settings: start at login failed — " + *loginItemFailure_);
    }
}

void GeneralSettings::openLoginItemSettings() { services_.loginItem.openSettings(); }

bool GeneralSettings::checksForUpdates() const {
    return services_.updater.engine().automaticallyChecksForUpdates();
}

void GeneralSettings::setChecksForUpdates(bool checks) {
    services_.updater.engine().setAutomaticallyChecksForUpdates(checks);
}

bool GeneralSettings::mayMoveWindows() const { return services_.windows.isTrusted(); }

void GeneralSettings::openAccessibilitySettings() { services_.windows.openAccessibilitySettings(); }

} // namespace karto
