#pragma once
// Executes every window command on the focused window, or on all windows of its display, and says in the
// check log what came of it.

#include "Karto/Adapters/ConfigProviding.h"
#include "Karto/Adapters/DisplayProviding.h"
#include "Karto/Adapters/WindowControlling.h"
#include "Karto/Log.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "KartoCore/KartoCommand.h"
#include "KartoCore/ZoneResolver.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <span>

namespace karto {

class Coordinator {
public:
    Coordinator(WindowControlling& windows, DisplayProviding& displays, const ConfigProviding& config,
                CheckLog& log);

    void handle(const KartoCommand& command);

private:
    using Ring = std::span<const ResolvedZone>;
    using Displays = std::span<const DisplayInfo>;
    using Collisions = std::span<const DisplayCollision>;
    // Where a window with that frame goes; absent when there is nowhere.
    using Destination = std::function<std::optional<Rect>(const Rect& frame, WindowHandle window)>;

    // Where a window was when it was first expanded.
    struct ExpansionOrigin {
        // The ring number of its zone.
        int order = 0;
        // Forgets it with its window.
        Registration closing;
    };

    void dispatch(const KartoCommand& command, Ring ring, Displays displays, Collisions collisions);
    void move(const KartoCommand& command, const Destination& destination);
    void fillDisplay(Displays displays);
    void tidy(Ring ring, Displays displays, Collisions collisions);
    void layOut(const DisplayInfo& display, Ring zones, std::span<const WindowSnapshot> list);

    std::optional<Rect> expandDestination(const Rect& frame, WindowHandle window, Ring ring);
    std::optional<Rect> shrinkDestination(const Rect& frame, WindowHandle window, Ring ring);
    void rememberOrigin(WindowHandle window, int order);
    // Index of the zone from which the window was expanded; forgotten when the ring has lost it.
    std::optional<std::size_t> origin(WindowHandle window, Ring ring);

    WindowControlling& windows_;
    DisplayProviding& displays_;
    const ConfigProviding& config_;
    CheckLog& log_;
    std::map<WindowHandle, ExpansionOrigin> expansionOrigins_;
    WeakCallbacks callbacks_;
};

} // namespace karto
