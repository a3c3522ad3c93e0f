#pragma once
// Puts the overlay on the displays: while the hyper combination is held, after its delay, or as a preview
// directly below another window of this program, where zones can be clicked and edited.

#include "Karto/Adapters/ConfigProviding.h"
#include "Karto/Adapters/DisplayProviding.h"
#include "Karto/Adapters/ModifierWatching.h"
#include "Karto/Log.h"
#include "Karto/Overlay/OverlayWindow.h"
#include "Karto/Overlay/ZoneEdit.h"
#include "Karto/Platform/ApplicationActivity.h"
#include "Karto/Platform/OverlayStage.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/Screens.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "KartoCore/Config.h"
#include "KartoCore/LayoutTree.h"
#include "KartoCore/OverlayDecision.h"
#include "KartoCore/OverlayLayout.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace karto {

class OverlayController {
public:
    // All of them outlive the controller.
    struct Services {
        const ConfigProviding& config;
        DisplayProviding& displays;
        Screens& screens;
        OverlayStage& stage;
        ApplicationActivity& activity;
        Scheduler& scheduler;
        CheckLog& log;
    };

    struct PreviewHandlers {
        // Hears the display that was clicked on, and the number of the zone or none.
        std::function<void(const DisplayInfo&, std::optional<int>)> onZoneClick;
        // Hears what is to be done to the zones of a display. Nothing is done here: updatePreview() shows
        // what has become of it.
        std::function<void(const DisplayInfo&, const ZoneEdit&)> onEdit;
    };

    OverlayController(const Services& services, PaintOverlay paint);

    // Follows the modifiers held from now on; once.
    void start(ModifierWatching& modifiers);

    // Until endPreview(), modifiers and changes of the screens are ignored. Nothing shows before
    // updatePreview().
    void beginPreview(WindowHandle previewWindow, PreviewHandlers handlers);
    // Shows a configuration, which need not be the one in force, below the preview's window. Nothing without
    // a preview.
    void updatePreview(const KartoConfig& config, std::optional<int> selectedZoneOrder);
    // A drag that is under way is committed first.
    void endPreview();

private:
    struct Preview {
        WindowHandle window;
        PreviewHandlers handlers;
        // What can be edited.
        std::vector<DisplayLayout> layouts;
    };

    void modifiersChanged(ModifierSet held);
    [[nodiscard]] OverlayDecision decision(bool delayElapsed) const;
    void decide(bool delayElapsed);
    void armDelay();
    void prepare();
    void show();
    void hide();
    void screensChanged();
    void activityChanged(bool isActive);
    void repaint();
    // The screens by the configuration in force.
    std::vector<OverlayScreen> currentScreens();
    // Both return a sentence for each display that no screen is found for.
    [[nodiscard]] std::vector<std::string> rebuildWindows(std::vector<OverlayScreen> screens);
    [[nodiscard]] std::vector<std::string> createWindows();
    void fill();
    // What of the preview can be edited on the display.
    [[nodiscard]] std::optional<ZoneEditingModel> editing(const DisplayInfo& display) const;
    // What they ask for may end the preview.
    void endGestures();
    void report(const std::vector<std::string>& sentences);

    Services services_;
    PaintOverlay paint_;
    ModifierWatching* modifiers_ = nullptr;
    // What is to be shown, and the windows that show it: one for each display that has a screen.
    std::vector<OverlayScreen> screens_;
    std::vector<std::unique_ptr<OverlayWindow>> overlayWindows_;
    std::vector<DisplayInfo> windowDisplays_;
    bool isShowing_ = false;
    Registration pendingShow_;
    Registration pendingPreparation_;
    // The window that the overlay was last ordered below.
    std::optional<WindowHandle> orderedBelow_;
    OverlayAppearance appearance_;
    ModifierSet lastHeld_;
    std::optional<Preview> preview_;
    Registration screenChanges_;
    Registration styleChanges_;
    Registration activityChanges_;
    WeakCallbacks callbacks_;
};

} // namespace karto
