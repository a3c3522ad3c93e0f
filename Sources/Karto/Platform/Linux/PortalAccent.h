#pragma once
// The accent colour that a person chose in the desktop's settings, as its settings portal tells it over
// D-Bus. A desktop without a session bus, without a portal or without such a choice has none.

#include "KartoCore/OverlayAppearance.h"

#include <QDBusMessage>
#include <QObject>

#include <functional>
#include <optional>

namespace karto {

class PortalAccent final : public QObject {
    Q_OBJECT

public:
    // Asks without waiting; onChange is called from the event loop when the colour is known or another one.
    explicit PortalAccent(std::function<void()> onChange);

    [[nodiscard]] std::optional<RGBColor> color() const { return color_; }

private:
    Q_SLOT void noteSetting(const QDBusMessage& change);
    void setColor(std::optional<RGBColor> color);

    std::function<void()> onChange_;
    std::optional<RGBColor> color_;
};

} // namespace karto
