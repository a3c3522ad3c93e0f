#pragma once
// The place of the stage's windows among all windows of the display, kept as long as they are shown.
// Other programs raise their windows too, and some window managers lift every window that they do not manage
// above those that they do. Where a window of the stage cannot be brought below another one, what should
// cover it is cut out of it: the picture is the same.

#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/WindowHandle.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/WindowManager.h"
#include "KartoCore/Picture.h"

#include <xcb/xcb.h>

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <vector>

namespace karto::x11 {

class StageOrder {
public:
    // Shown windows of the stage, from the top down.
    struct Wanted {
        // Above everything.
        std::vector<xcb_window_t> front;
        // Directly below windows of other kinds.
        std::map<WindowHandle, std::vector<xcb_window_t>> below;
        // Whether windows are blended by a compositor.
        bool isComposited = false;

        bool operator==(const Wanted&) const = default;
    };

    // Areas of the root, to be cut out of all windows below that one.
    using CutOut = std::function<void(WindowHandle, const std::vector<PixelRect>&)>;

    // Shows all windows in front once more, from the bottom up.
    using ShowAnew = std::function<void()>;

    StageOrder(Connection& connection, WindowManager& manager, Scheduler& scheduler, CutOut cutOut,
               ShowAnew showAnew);

    // Finds out what restack() needs, and cuts out what has to be cut out.
    void want(Wanted wanted);
    void restack();

private:
    using Stack = std::span<const xcb_window_t>;

    void note(const xcb_generic_event_t& event);
    void check();
    void keepInFront(Stack stack);
    void keepBelow(WindowHandle window, const std::vector<xcb_window_t>& own, Stack stack);
    void cutOut(WindowHandle window);
    // Whether the window manager insists on windows that it does not manage being above those that it does.
    [[nodiscard]] bool isLifted() const;
    // Whether windows may be seen above the one that they belong below.
    [[nodiscard]] bool mustCutOut() const;
    // Whether one more correction is no quarrel with a program that insists on its own order.
    bool mayCorrect();

    // The children of the root, from the bottom up; empty when the server does not answer.
    std::vector<xcb_window_t> readStack();
    // The child of the root that holds the window; absent when it is gone.
    std::optional<xcb_window_t> topLevel(WindowHandle window, Stack stack);
    // What a person sees of the window and of those above it.
    std::vector<PixelRect> framesFrom(WindowHandle window);

    Connection& connection_;
    WindowManager& manager_;
    Scheduler& scheduler_;
    CutOut cutOut_;
    ShowAnew showAnew_;
    Wanted wanted_;
    std::map<WindowHandle, xcb_window_t> topLevels_;
    // Windows that nothing gets above, the compositor's own for one.
    std::set<xcb_window_t> immovable_;
    // How often windows were found above the one that they belong below.
    int lifts_ = 0;
    bool isPaintedOnTop_ = false;
    int corrections_ = 0;
    Registration rootEvents_;
    Registration events_;
    Registration checking_;
    Registration checkingAgain_;
    Registration calmingDown_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
