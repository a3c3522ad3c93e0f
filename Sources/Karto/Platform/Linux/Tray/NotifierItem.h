#pragma once
// The status item on the session bus: org.kde.StatusNotifierItem. Trays read it and show it in their own way.

#include "Karto/Platform/Linux/SessionBus.h"
#include "Karto/Platform/Tray.h"

#include <functional>

namespace karto {

class NotifierItem {
public:
    static constexpr auto path = "/StatusNotifierItem";

    // On a connected bus. onActivate: the tray leaves it to the item to show its menu. menuPath: where the
    // menu is.
    NotifierItem(SessionBus& bus, const char* menuPath, std::function<void()> onActivate);
    NotifierItem(const NotifierItem&) = delete;
    NotifierItem(NotifierItem&&) = delete;
    NotifierItem& operator=(const NotifierItem&) = delete;
    NotifierItem& operator=(NotifierItem&&) = delete;
    ~NotifierItem() = default;

    void show(StatusItem::DrawIcon drawIcon, const StatusItemFace& face, const RGBColor& ink);

private:
    struct Calls;

    void tell(const char* change) const;

    SessionBus& bus_;
    const char* menuPath_;
    std::function<void()> onActivate_;
    StatusItem::DrawIcon drawIcon_;
    StatusItemFace face_;
    RGBColor ink_;
    BusSlot object_;
};

} // namespace karto
