#pragma once
// One kind of place where a desktop shows status items. A desktop may have several, or none, and they come
// and go.

#include "Karto/Platform/Registration.h"
#include "Karto/Platform/StatusItem.h"

#include <cstdint>
#include <functional>

namespace karto {

struct StatusItemContent {
    StatusItem::DrawIcon drawIcon;
    StatusItem::MakeMenu makeMenu;
    StatusItemFace face;
};

class Tray {
public:
    enum class Presence : std::uint8_t {
        // Nobody has said yet.
        unknown,
        absent,
        present,
    };

    virtual ~Tray() = default;

    [[nodiscard]] virtual Presence presence() const = 0;
    [[nodiscard]] virtual Registration observePresence(std::function<void()> onChange) = 0;

    // Shows the item there, now or as soon as there is such a place; again when the content has changed.
    virtual void show(const StatusItemContent& content) = 0;
    virtual void hide() = 0;
    // The menu has other lines than before.
    virtual void updateMenu() = 0;
};

} // namespace karto
