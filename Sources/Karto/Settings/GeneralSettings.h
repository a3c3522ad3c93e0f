#pragma once
// The section of the settings about the program itself: start at login, updates, and the permission to move
// windows. What fails is kept as long as this object, that is while the section is shown.

#include "Karto/Platform/LoginItemService.h"

#include <optional>
#include <string>

namespace karto {

class CheckLog;
class LoginItem;
class UpdaterService;
class WindowService;

class GeneralSettings {
public:
    // All of them outlive the section.
    struct Services {
        LoginItem& loginItem;
        UpdaterService& updater;
        WindowService& windows;
        CheckLog& log;
    };

    explicit GeneralSettings(const Services& services)
        : services_(services) {}

    // Asked of the desktop anew each time.
    [[nodiscard]] LoginItemStatus loginItemStatus() const;
    void setStartAtLogin(bool isEnabled);
    void openLoginItemSettings();

    // Why the last switch of start at login failed.
    [[nodiscard]] const std::optional<std::string>& loginItemFailure() const { return loginItemFailure_; }

    [[nodiscard]] bool checksForUpdates() const;
    void setChecksForUpdates(bool checks);

    [[nodiscard]] bool mayMoveWindows() const;
    void openAccessibilitySettings();

private:
    Services services_;
    std::optional<std::string> loginItemFailure_;
};

} // namespace karto
