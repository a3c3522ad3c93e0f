#pragma once
// Trays that take a window of the program in and show it among their own: XEMBED, with the tray announced by
// the selection _NET_SYSTEM_TRAY.

#include "Karto/Platform/Observers.h"
#include "Karto/Platform/Tray.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/SelectionOwner.h"
#include "KartoCore/Geometry.h"

#include <functional>
#include <optional>

namespace karto::x11 {

class TrayDock final : public Tray {
public:
    // anchor: what the menu belongs to, in pixels of the screen.
    using ShowMenu = std::function<void(const Menu& menu, const PixelRect& anchor)>;

    TrayDock(Connection& connection, ShowMenu showMenu);
    TrayDock(const TrayDock&) = delete;
    TrayDock(TrayDock&&) = delete;
    TrayDock& operator=(const TrayDock&) = delete;
    TrayDock& operator=(TrayDock&&) = delete;
    ~TrayDock() override;

    [[nodiscard]] Presence presence() const override {
        return isEmbedded_ ? Presence::present : Presence::absent;
    }

    [[nodiscard]] Registration observePresence(std::function<void()> onChange) override;
    void show(const StatusItemContent& content) override;
    void hide() override;

    // The program's own menu is made anew each time that it opens.
    void updateMenu() override {}

private:
    // A kind of window that a tray asks for.
    struct Kind {
        xcb_visualid_t visual = 0;
        std::uint8_t depth = 0;
        bool isTranslucent = false;
    };

    // NONE without one.
    [[nodiscard]] xcb_window_t trayWindow() const;
    void follow();
    [[nodiscard]] bool isInvitation(const xcb_client_message_event_t& message) const;
    void dock(xcb_window_t tray);
    void undock();
    [[nodiscard]] Kind kindFor(xcb_window_t tray);
    void createWindow(const Kind& kind);
    void writeLabel();
    void handle(const xcb_generic_event_t& event);
    void pressed(const xcb_button_press_event_t& press);
    void setEmbedded(bool isEmbedded);
    void paint();
    [[nodiscard]] std::optional<RGBColor> trayInk();

    Connection& connection_;
    ShowMenu showMenu_;
    Observers<> observers_;
    StatusItemContent content_;
    // Only while there is something to show.
    std::optional<SelectionOwner> tray_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    xcb_colormap_t colormap_ = XCB_COLORMAP_NONE;
    Kind kind_;
    int width_ = 0;
    int height_ = 0;
    bool isEmbedded_ = false;
    Registration rootEvents_;
    Registration events_;
};

} // namespace karto::x11
