#pragma once
// Borderless windows on X11. While a compositor runs they are translucent; otherwise they look like the rest
// of the desktop and are cut down to what is opaque in their pictures.

#include "Karto/Platform/DesktopTheme.h"
#include "Karto/Platform/ModifierEvents.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/OverlayStage.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/SelectionOwner.h"
#include "Karto/Platform/X11/Server/WindowManager.h"
#include "Karto/Platform/X11/Stage/BorderlessWindow.h"
#include "Karto/Platform/X11/Stage/StageOrder.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace karto::x11 {

class OverlayStage final : public karto::OverlayStage {
public:
    OverlayStage(Connection& connection, WindowManager& manager, karto::ModifierEvents& modifiers,
                 DesktopTheme& theme, Scheduler& scheduler);

    // False when the server lacks what the stage needs: nothing is ever shown then.
    [[nodiscard]] bool isUsable() const { return compositor_ != nullptr; }

    // The stage must outlive its windows.
    std::unique_ptr<karto::BorderlessWindow> createWindow(const Rect& frame) override;
    void present() override;

    [[nodiscard]] StageStyle style() const override;
    Registration observeStyleChanges(std::function<void()> onChange) override;

private:
    [[nodiscard]] bool isComposited() const { return compositor_->window() != XCB_WINDOW_NONE; }

    void handle(const xcb_generic_event_t& event);
    void tellMovements();
    void showCursors();
    void chooseFormat();
    // Windows that are ready take the server's memory, though not for long.
    void retireLater();
    void retire();
    void followCompositor();
    // Out of the windows below that one; nothing out of windows below no other.
    void cutOut(WindowHandle above, const std::vector<PixelRect>& areas);
    void showAnew();
    // From the top down.
    [[nodiscard]] std::vector<BorderlessWindow*> windowsInFront() const;
    [[nodiscard]] StageOrder::Wanted wantedOrder() const;

    Connection& connection_;
    WindowManager& manager_;
    Scheduler& scheduler_;
    DesktopTheme& theme_;
    RenderFormats formats_;
    StageShare share_;
    // Null for a stage that is not usable.
    std::unique_ptr<SelectionOwner> compositor_;
    StageOrder order_;
    // What the order was told last, and the share's turns by then.
    StageOrder::Wanted wanted_;
    std::uint64_t turns_ = 0;
    // In the order of creation.
    std::vector<BorderlessWindow*> windows_;
    Observers<> styleObservers_;
    Registration themeChanges_;
    Registration modifierChanges_;
    Registration events_;
    Registration lulls_;
    Registration retiring_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
