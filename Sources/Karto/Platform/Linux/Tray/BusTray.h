#pragma once
// Trays that show what programs describe over the session bus. One watcher on the bus knows of them; the item
// registers with every watcher that comes.

#include "Karto/Platform/Linux/SessionBus.h"
#include "Karto/Platform/Linux/Tray/BusMenu.h"
#include "Karto/Platform/Linux/Tray/NotifierItem.h"
#include "Karto/Platform/PanelLook.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/Tray.h"

#include <memory>
#include <optional>
#include <vector>

namespace karto {

class BusTray final : public Tray {
public:
    // showMenu: shows a menu at the pointer, for trays that cannot.
    BusTray(SessionBus& bus, Scheduler& scheduler, PanelLook& panels,
            std::function<void(const Menu&)> showMenu);
    BusTray(const BusTray&) = delete;
    BusTray(BusTray&&) = delete;
    BusTray& operator=(const BusTray&) = delete;
    BusTray& operator=(BusTray&&) = delete;
    ~BusTray() override = default;

    [[nodiscard]] Presence presence() const override { return presence_; }

    [[nodiscard]] Registration observePresence(std::function<void()> onChange) override;
    void show(const StatusItemContent& content) override;
    void hide() override;
    void updateMenu() override;

private:
    struct Calls;

    void busChanged();
    void followWatcher();
    void watcherChanged(bool isThere);
    void registerItem();
    void askForHost();
    void setPresence(Presence presence);
    void exportItem();
    void refreshItem();
    [[nodiscard]] Menu makeMenu();
    void activated();

    void keep(sd_bus_slot* slot) { watching_.emplace_back(slot); }

    SessionBus& bus_;
    Scheduler& scheduler_;
    PanelLook& panels_;
    std::function<void(const Menu&)> showMenu_;
    Presence presence_ = Presence::unknown;
    Observers<> observers_;
    std::optional<StatusItemContent> content_;
    std::unique_ptr<BusMenu> menu_;
    std::unique_ptr<NotifierItem> item_;
    bool hasWatcher_ = false;
    std::vector<BusSlot> watching_;
    BusSlot question_;
    Registration activation_;
    Registration repaint_;
    Registration busChanges_;
    Registration panelChanges_;
};

} // namespace karto
