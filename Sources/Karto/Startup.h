#pragma once
// Brings the program into service, and keeps its shortcuts and reports up to date when the configuration or
// the keyboard changes.

#include "Karto/Adapters/ConfigProviding.h"
#include "Karto/Adapters/DisplayProviding.h"
#include "Karto/Adapters/HotkeyService.h"
#include "Karto/Adapters/ModifierWatching.h"
#include "Karto/Adapters/WindowService.h"
#include "Karto/Log.h"
#include "Karto/Platform/ApplicationHost.h"
#include "Karto/Platform/HotKeyCenter.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "KartoCore/KartoCommand.h"

#include <string_view>

namespace karto {

class ConfigStore;
class Coordinator;
class OverlayController;
class SwitcherController;

// The exit status of a program that may not move windows.
inline constexpr int notTrustedStatus = 1;

// Whether the program may move windows here. When it may not, the user has been told, and the program is to
// end with notTrustedStatus.
bool isTrustedOrExplains(WindowService& windows, ApplicationHost& host, CheckLog& log);

class Startup {
public:
    // All of them outlive this object.
    struct Services {
        ApplicationHost& host;
        HotKeyCenter& hotKeyCenter;
        ConfigStore& store;
        DisplayProviding& displays;
        Coordinator& coordinator;
        HotkeyService& hotkeys;
        OverlayController& overlay;
        SwitcherController& switcher;
        // One for the overlay and one for the switcher.
        ModifierWatching& overlayModifiers;
        ModifierWatching& switcherModifiers;
        CheckLog& log;
    };

    explicit Startup(const Services& services);

    // Everything between the creation of the services and the event loop; once.
    void run();

private:
    void dispatch(const KartoCommand& command);
    void configChanged();
    void keyboardChanged();
    void rebindHotkeys();
    void reportConfig(std::string_view context);
    void reportHotkeys(std::string_view context);

    Services services_;
    Registration keyboardChanges_;
    WeakCallbacks callbacks_;
};

} // namespace karto
