#pragma once
// The menu of the status item on the session bus, for trays that show it themselves: com.canonical.dbusmenu.

#include "Karto/Platform/Linux/SessionBus.h"
#include "Karto/Platform/Linux/Tray/MenuExport.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/StatusItem.h"

#include <list>

namespace karto {

class BusMenu {
public:
    static constexpr auto path = "/MenuBar";

    // How the trays of a desktop want the key of a shortcut named.
    enum class KeyNames : std::uint8_t {
        // As the keyboard's symbols are called, "comma".
        symbols,
        // By what they type, ",".
        characters,
    };

    static KeyNames keyNamesOfSession();

    // On a connected bus; makeMenu is asked each time that the menu opens.
    BusMenu(SessionBus& bus, Scheduler& scheduler, StatusItem::MakeMenu makeMenu);
    BusMenu(const BusMenu&) = delete;
    BusMenu(BusMenu&&) = delete;
    BusMenu& operator=(const BusMenu&) = delete;
    BusMenu& operator=(BusMenu&&) = delete;
    ~BusMenu() = default;

    // Makes the menu anew and tells those who show it when it has changed; true then.
    bool update();

private:
    struct Calls;

    void happened(std::int32_t number, const std::string& event);
    void later(std::function<void()> action);

    SessionBus& bus_;
    Scheduler& scheduler_;
    StatusItem::MakeMenu makeMenu_;
    KeyNames keyNames_ = keyNamesOfSession();
    MenuExport menu_;
    // Actions that were clicked and have not begun.
    std::list<Registration> clicked_;
    BusSlot object_;
};

} // namespace karto
