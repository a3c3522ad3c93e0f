#pragma once
// Cycles through the windows that share the focused window's zone: the first press opens a panel with them
// and selects the one after the focused window, each further press selects the next one, and letting go of
// the hyper combination raises the selected one.

#include "Karto/Adapters/ConfigProviding.h"
#include "Karto/Adapters/DisplayProviding.h"
#include "Karto/Adapters/ModifierWatching.h"
#include "Karto/Adapters/WindowControlling.h"
#include "Karto/Log.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Switcher/SwitcherWindow.h"
#include "KartoCore/ModifierSet.h"

#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <vector>

namespace karto {

class SwitcherController {
public:
    // All of them outlive the controller.
    SwitcherController(WindowControlling& windows, DisplayProviding& displays, const ConfigProviding& config,
                       SwitcherWindow& panel, CheckLog& log);

    // Follows the modifiers held from now on; once.
    void start(ModifierWatching& modifiers);

    // Begins a gesture, or moves the selection of the one that is running.
    void advance();
    // Ends the gesture without raising anything; nothing without a gesture.
    void cancel();

private:
    struct Session {
        std::vector<WindowSnapshot> entries;
        std::vector<SwitcherRow> rows;
        // Of the panel, global points.
        Rect frame;
        std::size_t selected = 0;
        // The hyper combination when the gesture began.
        ModifierSet combination;
        // Where the zone and its display are.
        Rect zone;
        Rect display;
        // The first row that is seen.
        int firstRow = 0;
    };

    struct Beginning {
        Session session;
        // What there is to cycle.
        std::string sentence;
    };

    // The error says why there is nothing to cycle.
    std::expected<Beginning, std::string> begin();
    std::expected<Beginning, std::string> beginAround(WindowHandle focused, const Rect& focusedFrame,
                                                      const KartoConfig& config, ModifierSet combination);
    // As the desktop's look is now, with the selected row among those that are seen.
    void show(Session& session);
    void modifiersChanged(ModifierSet held);

    WindowControlling& windows_;
    DisplayProviding& displays_;
    const ConfigProviding& config_;
    SwitcherWindow& panel_;
    CheckLog& log_;
    std::optional<Session> session_;
    Registration styleChanges_;
    WeakCallbacks callbacks_;
};

} // namespace karto
