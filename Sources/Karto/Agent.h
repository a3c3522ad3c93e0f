#pragma once
// The program: owns every service, brings them into service, and keeps shortcuts and reports up to date when
// the configuration or the keyboard changes. The same on a real desktop and on one in memory.

#include "Karto/Adapters/ConfigStore.h"
#include "Karto/Adapters/DisplayRegistry.h"
#include "Karto/Adapters/HotkeyService.h"
#include "Karto/Adapters/LoginItem.h"
#include "Karto/Adapters/ModifierMonitor.h"
#include "Karto/Adapters/UpdaterService.h"
#include "Karto/Adapters/WindowService.h"
#include "Karto/Coordinator.h"
#include "Karto/Log.h"
#include "Karto/MenuBarController.h"
#include "Karto/Overlay/OverlayController.h"
#include "Karto/Platform/Platform.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Settings/GeneralSettings.h"
#include "Karto/Settings/SettingsController.h"
#include "Karto/Switcher/SwitcherController.h"
#include "Karto/Switcher/SwitcherWindow.h"
#include "KartoCore/KartoCommand.h"

#include <functional>
#include <memory>
#include <string_view>

namespace karto {

// What makes the pictures and the windows that a person sees.
struct Faces {
    PaintOverlay overlay;
    PaintSwitcher switcher;
    std::function<std::unique_ptr<SettingsWindow>(SettingsModel&, SettingsWindow::Events,
                                                  const GeneralSettings::Services&)>
        settings;
};

class Agent {
public:
    // The exit status of a program that may not move windows.
    static constexpr int notTrustedStatus = 1;

    // homeDirectory: where the configuration file lives below.
    Agent(const Platform& platform, Faces faces, CheckLog& log, std::string_view homeDirectory);

    // Everything before the event loop; once. False when the program may not move windows here: the user has
    // been told, nothing is in service, and the program is to end with notTrustedStatus.
    [[nodiscard]] bool start();

    // The configuration in force.
    [[nodiscard]] ConfigStore& store() { return store_; }

private:
    bool isTrustedOrExplains();
    void dispatch(const KartoCommand& command);
    void configChanged(ConfigChangeEvent event);
    void keyboardChanged();
    void rebindHotkeys();
    void reportConfig(std::string_view context);
    void reportHotkeys(std::string_view context);

    ApplicationHost& host_;
    FileSystem& files_;
    HotKeyCenter& hotKeyCenter_;
    Instance& instance_;
    CheckLog& log_;

    ConfigStore store_;
    DisplayRegistry displays_;
    UpdaterService updater_;
    WindowService windows_;
    Coordinator coordinator_;
    SwitcherWindow switcherWindow_;
    SwitcherController switcher_;
    HotkeyService hotkeys_;
    OverlayController overlay_;
    SettingsController settings_;
    LoginItem loginItem_;
    MenuBarController menuBar_;
    ModifierMonitor overlayModifiers_;
    ModifierMonitor switcherModifiers_;

    Registration keyboardChanges_;
    Registration furtherStarts_;
    WeakCallbacks callbacks_;
};

} // namespace karto
