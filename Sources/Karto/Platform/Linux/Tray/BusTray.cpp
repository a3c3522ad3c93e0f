#include "Karto/Platform/Linux/Tray/BusTray.h"

#include <string_view>
#include <utility>

namespace karto {

namespace {

constexpr auto busName = "org.freedesktop.DBus";
constexpr auto busPath = "/org/freedesktop/DBus";
constexpr auto watcherName = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";

constexpr std::chrono::milliseconds repaintTime{1000};

} // namespace

// What the bus calls.
struct BusTray::Calls {
    static BusTray& tray(void* self) { return *static_cast<BusTray*>(self); }

    static int ownerChanged(sd_bus_message* signal, void* self, sd_bus_error* /*error*/) {
        const char* name = nullptr;
        const char* before = nullptr;
        const char* owner = nullptr;
        if (sd_bus_message_read(signal, "sss", &name, &before, &owner) >= 0) {
            tray(self).watcherChanged(!std::string_view(owner).empty());
        }
        return 0;
    }

    static int ownerTold(sd_bus_message* answer, void* self, sd_bus_error* /*error*/) {
        tray(self).watcherChanged(sd_bus_message_is_method_error(answer, nullptr) == 0);
        return 0;
    }

    static int hostChanged(sd_bus_message* /*signal*/, void* self, sd_bus_error* /*error*/) {
        tray(self).askForHost();
        return 0;
    }

    static int hostTold(sd_bus_message* answer, void* self, sd_bus_error* /*error*/) {
        int isRegistered = 0;
        const bool isAnswer = sd_bus_message_is_method_error(answer, nullptr) == 0 &&
                              sd_bus_message_read(answer, "v", "b", &isRegistered) >= 0;
        tray(self).setPresence(isAnswer && isRegistered != 0 ? Presence::present : Presence::absent);
        return 0;
    }

    static int ignore(sd_bus_message* /*answer*/, void* /*self*/, sd_bus_error* /*error*/) { return 0; }
};

BusTray::BusTray(SessionBus& bus, Scheduler& scheduler, PanelLook& panels,
                 std::function<void(const Menu&)> showMenu)
    : bus_(bus)
    , scheduler_(scheduler)
    , panels_(panels)
    , showMenu_(std::move(showMenu))
    , busChanges_(bus.observeState([this] { busChanged(); })) {
    busChanged();
}

Registration BusTray::observePresence(std::function<void()> onChange) {
    return observers_.add(std::move(onChange));
}

void BusTray::show(const StatusItemContent& content) {
    content_ = content;
    if (item_) {
        refreshItem();
    } else if (hasWatcher_) {
        exportItem();
    }
}

void BusTray::hide() {
    content_.reset();
    repaint_.reset();
    activation_.reset();
    item_.reset();
    menu_.reset();
}

void BusTray::updateMenu() {
    if (menu_) {
        menu_->update();
    }
}

void BusTray::busChanged() {
    switch (bus_.state()) {
    case SessionBus::State::connecting: break;
    case SessionBus::State::connected: followWatcher(); break;
    case SessionBus::State::absent: watcherChanged(false); break;
    }
}

void BusTray::followWatcher() {
    sd_bus_slot* slot = nullptr;
    sd_bus_add_match_async(bus_.get(), &slot,
                           "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
                           "interface='org.freedesktop.DBus',member='NameOwnerChanged',"
                           "arg0='org.kde.StatusNotifierWatcher'",
                           Calls::ownerChanged, nullptr, this);
    keep(std::exchange(slot, nullptr));
    for (const auto* change : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        sd_bus_match_signal_async(bus_.get(), &slot, nullptr, watcherPath, watcherName, change,
                                  Calls::hostChanged, nullptr, this);
        keep(std::exchange(slot, nullptr));
    }
    sd_bus_call_method_async(bus_.get(), &slot, busName, busPath, busName, "GetNameOwner", Calls::ownerTold,
                             this, "s", watcherName);
    keep(slot);
}

void BusTray::watcherChanged(bool isThere) {
    hasWatcher_ = isThere;
    question_.reset();
    if (!isThere) {
        setPresence(Presence::absent);
        return;
    }
    if (content_) {
        exportItem();
    }
    askForHost();
}

void BusTray::exportItem() {
    if (!item_) {
        menu_ = std::make_unique<BusMenu>(bus_, scheduler_, [this] { return makeMenu(); });
        item_ = std::make_unique<NotifierItem>(bus_, BusMenu::path, [this] { activated(); });
        panelChanges_ = panels_.observeChanges([this] { refreshItem(); });
        refreshItem();
    }
    registerItem();
    // The tray may have announced itself before its panel is painted.
    repaint_ = scheduler_.after(repaintTime, [this] { refreshItem(); });
}

// A person who opens the menu looks at the icon: it had better fit the panel.
Menu BusTray::makeMenu() {
    refreshItem();
    return content_ ? content_->makeMenu() : Menu();
}

void BusTray::registerItem() {
    const char* ownName = nullptr;
    sd_bus_get_unique_name(bus_.get(), &ownName);
    sd_bus_call_method_async(bus_.get(), nullptr, watcherName, watcherPath, watcherName,
                             "RegisterStatusNotifierItem", Calls::ignore, nullptr, "s", ownName);
}

void BusTray::askForHost() {
    sd_bus_message* call = nullptr;
    sd_bus_slot* slot = nullptr;
    sd_bus_message_new_method_call(bus_.get(), &call, watcherName, watcherPath,
                                   "org.freedesktop.DBus.Properties", "Get");
    sd_bus_message_append(call, "ss", watcherName, "IsStatusNotifierHostRegistered");
    sd_bus_call_async(bus_.get(), &slot, call, Calls::hostTold, this, 0);
    sd_bus_message_unref(call);
    question_.reset(slot);
}

void BusTray::setPresence(Presence presence) {
    if (presence != std::exchange(presence_, presence)) {
        observers_.notify();
    }
}

void BusTray::refreshItem() {
    if (item_ && content_) {
        item_->show(content_->drawIcon, content_->face, panels_.ink());
    }
}

void BusTray::activated() {
    activation_ = scheduler_.after(std::chrono::milliseconds(0), [this] { showMenu_(makeMenu()); });
}

} // namespace karto
