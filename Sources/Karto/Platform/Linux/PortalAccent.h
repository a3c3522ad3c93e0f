#pragma once
// The accent colour that a person chose in the desktop's settings, as its settings portal tells it over
// D-Bus. A desktop without a session bus, without a portal or without such a choice has none.

#include "KartoCore/OverlayAppearance.h"

#include <functional>
#include <memory>
#include <optional>

namespace karto {

class PortalAccent {
public:
    // Asks without waiting; onChange is called from the event loop when the colour is known or another one.
    explicit PortalAccent(std::function<void()> onChange);
    ~PortalAccent();
    PortalAccent(const PortalAccent&) = delete;
    PortalAccent(PortalAccent&&) = delete;
    PortalAccent& operator=(const PortalAccent&) = delete;
    PortalAccent& operator=(PortalAccent&&) = delete;

    [[nodiscard]] std::optional<RGBColor> color() const;

private:
    class Receiver;

    std::unique_ptr<Receiver> receiver_;
};

} // namespace karto
