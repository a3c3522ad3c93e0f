#pragma once
// A window of the stage: what is asked of it, and how it stands on the server.
// What shows lets the mouse through always; a window that takes the mouse has a second one above it,
// invisible and just as large, so that the pointer is heard also where the first is cut away.

#include "Karto/Platform/Observers.h"
#include "Karto/Platform/OverlayStage.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Stage/Cursors.h"
#include "Karto/Platform/X11/Stage/MouseTaker.h"
#include "Karto/Platform/X11/Stage/RenderFormats.h"
#include "Karto/Platform/X11/Stage/ServerImages.h"
#include "Karto/Platform/X11/Stage/Surface.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace karto::x11 {

// What the windows of one stage share.
struct StageShare {
    Connection& connection;
    ServerImages images;
    Cursors cursors;
    // What the windows are made of.
    WindowFormat format;
    bool isTranslucent = false;
    // Whether windows may wait out of sight among those of the desktop.
    bool mayWait = false;
    // How often a window was given a place among others, or on the desktop.
    std::uint64_t turns = 0;
    // The modifiers held now.
    ModifierFlags held;
};

class BorderlessWindow final : public karto::BorderlessWindow {
public:
    struct Hidden {};

    // About to be shown, or hidden a moment ago. A translucent desktop keeps what is painted on a window, so
    // it is there already, beyond the edge of the desktop, if it may; otherwise only what its picture needs
    // is.
    struct Ready {};

    struct InFront {
        // Of two windows of one level, the later one is in front.
        std::uint64_t turn = 0;
    };

    struct Below {
        WindowHandle window;
    };

    using Standing = std::variant<Hidden, Ready, InFront, Below>;

    BorderlessWindow(StageShare& share, const Rect& frame);

    void setFrame(const Rect& frame) override;

    void setLevel(StageLevel level) override { level_ = level; }

    void setIgnoresMouse(bool ignoresMouse) override { ignoresMouse_ = ignoresMouse; }

    void setPicture(Picture picture) override;

    void prepare() override;

    void orderFront() override { standing_ = InFront{.turn = ++share_.turns}; }

    void orderBelow(WindowHandle window) override {
        standing_ = Below{.window = window};
        ++share_.turns;
    }

    void orderOut() override;

    void setCursor(Cursor cursor) override;
    Registration observePointer(std::function<void(const PointerEvent&)> onPointer) override;
    std::optional<Point> pointer() override;

    // The stage takes its windows through these together, one step after the other.
    // Sends whatever takes long; nothing of it can be seen.
    void build();
    // Brings what is shown into place and shape, and hides what is not.
    void arrange();
    void show();
    void paint();

    [[nodiscard]] const Standing& standing() const { return standing_; }

    [[nodiscard]] bool isReady() const { return std::holds_alternative<Ready>(standing_); }

    [[nodiscard]] StageLevel level() const { return level_; }

    // From the top down; none while hidden.
    [[nodiscard]] std::vector<xcb_window_t> windows() const;

    // Takes areas of the root out of the window, until told otherwise.
    void cutOut(std::vector<PixelRect> areas);
    // Hides the window, which must be shown, and shows it again at once.
    void showAnew();
    // Hides what was only ready.
    void retire();
    // To be called when the share's format has changed.
    void rebuild();
    // The same for the cursors.
    void showCursor();
    // Whether the event was one of this window; it may have ended the window.
    bool handle(const xcb_generic_event_t& event);

    [[nodiscard]] bool isMovementWaiting() const { return mouseTaker_ && mouseTaker_->isMovementWaiting(); }

    // Tells of the movement that is waiting, and what it was; that may end the window.
    PointerAction tellMovement();

    // Lasts as long as the window.
    void keep(Registration registration) { kept_ = std::move(registration); }

private:
    [[nodiscard]] bool isHidden() const { return std::holds_alternative<Hidden>(standing_); }

    [[nodiscard]] bool isShown() const {
        return std::holds_alternative<InFront>(standing_) || std::holds_alternative<Below>(standing_);
    }

    // Whether the server has it among the windows of the desktop.
    [[nodiscard]] bool isMapped() const { return isShown() || (isReady() && share_.mayWait); }

    [[nodiscard]] bool takesMouse() const { return isShown() && !ignoresMouse_; }

    [[nodiscard]] PixelRect whole() const { return {.width = area_.width, .height = area_.height}; }

    [[nodiscard]] Background background() const {
        return share_.isTranslucent ? Background::prevailing : Background::transparent;
    }

    void plan();
    void hideSurface();
    void applyShape();
    // Where the picture has changed.
    void reshapeDamage();
    // Of areas of the window.
    [[nodiscard]] std::vector<PixelRect> withoutCuts(std::vector<PixelRect> areas) const;
    // May end the window.
    void tell(const std::vector<PointerEvent>& events);

    StageShare& share_;
    PixelRect area_;
    StageLevel level_ = StageLevel::floating;
    bool ignoresMouse_ = true;
    Picture picture_;
    Standing standing_;
    std::vector<PixelRect> cuts_;

    // Both null until they are needed.
    std::unique_ptr<Surface> surface_;
    std::unique_ptr<MouseTaker> mouseTaker_;
    // What the surface was told to show last.
    Picture planned_;
    // Where that differs from what is painted on it, while anything is.
    std::vector<PixelRect> damage_;
    // All that is there while the desktop is not translucent; absent until it is needed.
    std::optional<std::vector<PixelRect>> opaqueArea_;
    // Where the surface was placed last; absent for a new one.
    std::optional<PixelRect> placed_;
    bool isPlanned_ = false;
    bool isShaped_ = false;
    bool isPainted_ = false;
    Cursor cursor_ = Cursor::arrow;
    // Outlives the window while it tells of the pointer.
    std::shared_ptr<Observers<PointerEvent>> pointerObservers_ = std::make_shared<Observers<PointerEvent>>();
    Registration kept_;
};

} // namespace karto::x11
