#pragma once
// The life of the settings window: opens it on the configuration in force, writes every edit back once edits
// pause, shows the layout being edited on the displays, and follows changes of the file and of the displays.

#include "Karto/Adapters/ConfigProviding.h"
#include "Karto/Adapters/DisplayProviding.h"
#include "Karto/Overlay/ZoneEdit.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Settings/SettingsModel.h"
#include "Karto/Settings/SettingsWindow.h"

#include <memory>
#include <optional>
#include <vector>

namespace karto {

class ApplicationActivity;
class ApplicationHost;
class CheckLog;
class FileSystem;
class HotkeyService;
class KeyEvents;
class OverlayController;
class Scheduler;
class Screens;

class SettingsController {
public:
    // All of them outlive the controller.
    struct Services {
        ConfigProviding& config;
        DisplayProviding& displays;
        OverlayController& overlay;
        const HotkeyService& hotkeys;
        ApplicationHost& host;
        ApplicationActivity& activity;
        Screens& screens;
        Scheduler& scheduler;
        FileSystem& files;
        KeyEvents& keyEvents;
        CheckLog& log;
    };

    SettingsController(const Services& services, MakeSettingsWindow makeWindow);

    // Opens the window, or brings it to the front.
    void show();

    // To be told of every outcome of a reload.
    void configChangedExternally(ConfigChangeEvent event);

    // The commands whose shortcuts could not be claimed.
    void setFailedCommands(const std::vector<KartoCommand>& commands);

    // Null while the window is closed.
    [[nodiscard]] SettingsModel* model() { return open_ ? &open_->model : nullptr; }

private:
    // What exists while the window is open.
    struct Open {
        SettingsModel model;
        std::unique_ptr<SettingsWindow> window;
        Registration activityChanges;
    };

    void willClose();
    // A recording ends when the keyboard goes elsewhere.
    void stopRecording();
    void commitColor();
    void updatePreview();
    void scheduleWrite();
    void writeNow();
    void writeWhatWaits();
    void revert();
    // Starts the history again from a configuration that did not come from the window.
    void startOver(const KartoConfig& config);
    void zoneClicked(const DisplayInfo& display, std::optional<int> zoneNumber);
    void zoneEdited(const DisplayInfo& display, const ZoneEdit& edit);
    void refreshDisplays();

    Services services_;
    MakeSettingsWindow makeWindow_;
    std::unique_ptr<Open> open_;
    // Lasts until it has run.
    Registration pendingWrite_;
    Registration termination_;
    Registration screenChanges_;
    WeakCallbacks callbacks_;
};

} // namespace karto
