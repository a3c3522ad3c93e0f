#include "Karto/Platform/Linux/PortalAccent.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace karto {

namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr auto object = "/org/freedesktop/portal/desktop";
constexpr auto interface = "org.freedesktop.portal.Settings";
constexpr auto colorGroup = "org.freedesktop.appearance";
constexpr auto colorKey = "accent-color";

// Of the variant that comes next, or of the variant in it. Absent for any other value, and for channels out
// of range, which stand for "no preference".
std::optional<RGBColor> readColor(sd_bus_message* message) {
    RGBColor color;
    while (sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, "v") > 0) {}
    if (sd_bus_message_read(message, "v", "(ddd)", &color.red, &color.green, &color.blue) <= 0) {
        return std::nullopt;
    }
    const bool isInRange =
        std::ranges::all_of(std::initializer_list<double>{color.red, color.green, color.blue},
                            [](double channel) { return 0 <= channel && channel <= 1; });
    return isInRange ? std::optional(color) : std::nullopt;
}

} // namespace

// What the bus calls.
struct PortalAccent::Calls {
    static int settingChanged(sd_bus_message* signal, void* self, sd_bus_error* /*error*/) {
        const char* group = nullptr;
        const char* key = nullptr;
        if (sd_bus_message_read(signal, "ss", &group, &key) > 0 && std::string_view(group) == colorGroup &&
            std::string_view(key) == colorKey) {
            static_cast<PortalAccent*>(self)->setColor(readColor(signal));
        }
        return 0;
    }

    static int settingTold(sd_bus_message* answer, void* self, sd_bus_error* /*error*/) {
        if (sd_bus_message_is_method_error(answer, nullptr) == 0) {
            static_cast<PortalAccent*>(self)->setColor(readColor(answer));
        }
        return 0;
    }
};

PortalAccent::PortalAccent(SessionBus& bus, std::function<void()> onChange)
    : bus_(bus)
    , onChange_(std::move(onChange))
    , busChanges_(bus.observeState([this] { ask(); })) {
    ask();
}

void PortalAccent::ask() {
    if (bus_.state() != SessionBus::State::connected) {
        return;
    }
    sd_bus_slot* slot = nullptr;
    sd_bus_match_signal_async(bus_.get(), &slot, service, object, interface, "SettingChanged",
                              Calls::settingChanged, nullptr, this);
    changes_.reset(std::exchange(slot, nullptr));
    sd_bus_call_method_async(bus_.get(), &slot, service, object, interface, "Read", Calls::settingTold, this,
                             "ss", colorGroup, colorKey);
    question_.reset(slot);
}

void PortalAccent::setColor(std::optional<RGBColor> color) {
    if (color != color_) {
        color_ = color;
        onChange_();
    }
}

} // namespace karto
