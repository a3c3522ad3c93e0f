#include "Support/TrayHost.h"

#include <array>
#include <cstdarg>
#include <string_view>

namespace karto::desktop {

namespace {

constexpr auto watcher = "org.kde.StatusNotifierWatcher";
constexpr auto itemInterface = "org.kde.StatusNotifierItem";
constexpr auto menuInterface = "com.canonical.dbusmenu";
constexpr auto itemPath = "/StatusNotifierItem";
constexpr auto menuPath = "/MenuBar";

void check(int outcome, const std::string& what) {
    if (outcome < 0) {
        throw std::runtime_error(what + " failed on the bus: " + std::to_string(outcome));
    }
}

BusMenuLine readLine(sd_bus_message* message) {
    BusMenuLine line;
    sd_bus_message_read(message, "i", &line.number);
    sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "{sv}");
    while (sd_bus_message_enter_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv") > 0) {
        const char* key = nullptr;
        sd_bus_message_read(message, "s", &key);
        const std::string_view name(key);
        const char* text = nullptr;
        int number = 0;
        if (name == "label") {
            sd_bus_message_read(message, "v", "s", &text);
            line.label = text;
        } else if (name == "type") {
            sd_bus_message_skip(message, "v");
            line.label = '-';
        } else if (name == "enabled") {
            sd_bus_message_read(message, "v", "b", &number);
            line.isEnabled = number != 0;
        } else if (name == "toggle-state") {
            sd_bus_message_read(message, "v", "i", &line.toggle);
        } else if (name == "shortcut") {
            const char* modifier = nullptr;
            sd_bus_message_read(message, "v", "aas", 1, 2, &modifier, &text);
            line.shortcut = std::string(modifier) + "+" + text;
        } else {
            sd_bus_message_skip(message, "v");
        }
        sd_bus_message_exit_container(message);
    }
    sd_bus_message_exit_container(message);
    sd_bus_message_skip(message, "av");
    return line;
}

} // namespace

struct TrayHost::Calls {
    static int registerItem(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
        static_cast<TrayHost*>(self)->items_.emplace_back(sd_bus_message_get_sender(message));
        return sd_bus_reply_method_return(message, "");
    }

    static int isRegistered(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                            const char* /*name*/, sd_bus_message* reply, void* /*self*/,
                            sd_bus_error* /*error*/) {
        return sd_bus_message_append(reply, "b", 1);
    }

    static int layoutUpdated(sd_bus_message* /*message*/, void* self, sd_bus_error* /*error*/) {
        ++static_cast<TrayHost*>(self)->layoutUpdates_;
        return 0;
    }

    inline static const auto table = std::to_array<sd_bus_vtable>({
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("RegisterStatusNotifierItem", "s", "", registerItem, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_PROPERTY("IsStatusNotifierHostRegistered", "b", isRegistered, 0, 0),
        SD_BUS_VTABLE_END,
    });
};

TrayHost::TrayHost(const std::string& busAddress) {
    sd_bus* bus = nullptr;
    sd_bus_new(&bus);
    bus_.reset(bus);
    sd_bus_set_address(bus, busAddress.c_str());
    sd_bus_set_bus_client(bus, 1);
    check(sd_bus_start(bus), "connecting");
    check(
        sd_bus_add_object_vtable(bus, nullptr, "/StatusNotifierWatcher", watcher, Calls::table.data(), this),
        "exporting");
    sd_bus_match_signal(bus, nullptr, nullptr, menuPath, menuInterface, "LayoutUpdated", Calls::layoutUpdated,
                        this);
    check(sd_bus_request_name(bus, watcher, 0), "taking the name");
}

void TrayHost::pump() {
    while (sd_bus_process(bus_.get(), nullptr) > 0) {}
}

std::string TrayHost::item() {
    require("an item to register", [this] {
        pump();
        return !items_.empty();
    });
    return items_.back();
}

TrayHost::Message TrayHost::call(const char* path, const char* interface, const char* method,
                                 const char* types, ...) {
    sd_bus_message* message = nullptr;
    sd_bus_message_new_method_call(bus_.get(), &message, item().c_str(), path, interface, method);
    const Message call(message);
    va_list arguments; // NOLINT(cppcoreguidelines-init-variables)
    va_start(arguments, types);
    sd_bus_message_appendv(message, types, arguments);
    va_end(arguments);
    sd_bus_message* reply = nullptr;
    check(sd_bus_call(bus_.get(), message, 0, nullptr, &reply), method);
    return Message(reply);
}

TrayHost::Message TrayHost::property(const char* name) {
    auto reply = call(itemPath, "org.freedesktop.DBus.Properties", "Get", "ss", itemInterface, name);
    return reply;
}

std::string TrayHost::text(const std::string& name) {
    const auto reply = property(name.c_str());
    const char* value = nullptr;
    check(sd_bus_message_read(reply.get(), "v", "s", &value), name);
    return value;
}

std::vector<int> TrayHost::iconSides() {
    const auto reply = property("IconPixmap");
    std::vector<int> sides;
    sd_bus_message_enter_container(reply.get(), SD_BUS_TYPE_VARIANT, "a(iiay)");
    sd_bus_message_enter_container(reply.get(), SD_BUS_TYPE_ARRAY, "(iiay)");
    while (sd_bus_message_enter_container(reply.get(), SD_BUS_TYPE_STRUCT, "iiay") > 0) {
        int width = 0;
        int height = 0;
        const void* bytes = nullptr;
        std::size_t count = 0;
        sd_bus_message_read(reply.get(), "ii", &width, &height);
        sd_bus_message_read_array(reply.get(), SD_BUS_TYPE_BYTE, &bytes, &count);
        sd_bus_message_exit_container(reply.get());
        if (width == height && count == std::size_t(width) * std::size_t(height) * 4) {
            sides.push_back(width);
        }
    }
    return sides;
}

std::vector<BusMenuLine> TrayHost::openMenu() {
    call(menuPath, menuInterface, "AboutToShow", "i", 0);
    const auto reply = call(menuPath, menuInterface, "GetLayout", "iias", 0, -1, 0);
    std::vector<BusMenuLine> lines;
    sd_bus_message_skip(reply.get(), "u");
    sd_bus_message_enter_container(reply.get(), SD_BUS_TYPE_STRUCT, "ia{sv}av");
    sd_bus_message_skip(reply.get(), "ia{sv}");
    sd_bus_message_enter_container(reply.get(), SD_BUS_TYPE_ARRAY, "v");
    while (sd_bus_message_enter_container(reply.get(), SD_BUS_TYPE_VARIANT, "(ia{sv}av)") > 0) {
        sd_bus_message_enter_container(reply.get(), SD_BUS_TYPE_STRUCT, "ia{sv}av");
        lines.push_back(readLine(reply.get()));
        sd_bus_message_exit_container(reply.get());
        sd_bus_message_exit_container(reply.get());
    }
    return lines;
}

void TrayHost::click(const std::string& label) {
    for (const auto& line : openMenu()) {
        if (line.label == label) {
            click(line.number);
            return;
        }
    }
    throw std::runtime_error("no such line: " + label);
}

void TrayHost::click(std::int32_t number) {
    call(menuPath, menuInterface, "Event", "isvu", number, "clicked", "i", 0, 0U);
}

} // namespace karto::desktop
