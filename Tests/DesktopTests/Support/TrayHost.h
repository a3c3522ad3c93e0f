#pragma once
// A tray as another program on the message bus: it announces itself, items register with it, and it reads and
// clicks their menus. It answers the bus while it is asked something or waits.

#include "Support/Waiting.h"

#include <systemd/sd-bus.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace karto::desktop {

struct BusMenuLine {
    std::int32_t number = 0;
    // As the bus has it; "-" for a separator.
    std::string label;
    bool isEnabled = true;
    // -1 for a line that is not switched.
    int toggle = -1;
    std::string shortcut;
};

class TrayHost {
public:
    explicit TrayHost(const std::string& busAddress);
    TrayHost(const TrayHost&) = delete;
    TrayHost(TrayHost&&) = delete;
    TrayHost& operator=(const TrayHost&) = delete;
    TrayHost& operator=(TrayHost&&) = delete;
    // Its connection breaks, as that of a tray that crashes.
    ~TrayHost() = default;

    // The items that have registered since it started.
    [[nodiscard]] std::vector<std::string>& items() { return items_; }

    // The one item there is, or throws.
    std::string item();
    // A text of the item.
    std::string text(const std::string& property);
    // Pixels of the side of every picture of the item.
    std::vector<int> iconSides();

    // The menu as it opens.
    std::vector<BusMenuLine> openMenu();

    // The number of changes that the bus has told since it started.
    [[nodiscard]] int layoutUpdates() const { return layoutUpdates_; }

    void click(const std::string& label);
    void click(std::int32_t number);

    // Handles what has arrived.
    void pump();

private:
    struct Calls;

    struct Close {
        void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    };

    struct Unref {
        void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
    };

    using Message = std::unique_ptr<sd_bus_message, Unref>;

    Message call(const char* path, const char* interface, const char* method, const char* types, ...);
    Message property(const char* name);

    std::unique_ptr<sd_bus, Close> bus_;
    std::vector<std::string> items_;
    int layoutUpdates_ = 0;
};

} // namespace karto::desktop
