#pragma once
// The accent colour that a person chose in the desktop's settings, as its settings portal tells it over
// D-Bus. A desktop without a session bus, without a portal or without such a choice has none.

#include "Karto/Platform/Linux/SessionBus.h"
#include "Karto/Platform/Registration.h"
#include "KartoCore/OverlayAppearance.h"

#include <functional>
#include <optional>

namespace karto {

class PortalAccent {
public:
    // Asks without waiting; onChange is called from the event loop when the colour is known or another one.
    PortalAccent(SessionBus& bus, std::function<void()> onChange);
    PortalAccent(const PortalAccent&) = delete;
    PortalAccent(PortalAccent&&) = delete;
    PortalAccent& operator=(const PortalAccent&) = delete;
    PortalAccent& operator=(PortalAccent&&) = delete;
    ~PortalAccent() = default;

    [[nodiscard]] std::optional<RGBColor> color() const { return color_; }

private:
    struct Calls;

    void ask();
    void setColor(std::optional<RGBColor> color);

    SessionBus& bus_;
    std::function<void()> onChange_;
    std::optional<RGBColor> color_;
    BusSlot changes_;
    BusSlot question_;
    Registration busChanges_;
};

} // namespace karto
