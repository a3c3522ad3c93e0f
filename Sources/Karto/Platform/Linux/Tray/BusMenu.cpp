#include "Karto/Platform/Linux/Tray/BusMenu.h"

#include "Karto/Platform/Linux/CurrentDesktop.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace karto {

namespace {

constexpr auto interface = "com.canonical.dbusmenu";
constexpr auto propertiesType = "{sv}";

using Names = std::vector<std::string>;

// Writes properties of a line that were asked for; all of them where no name was given.
class PropertyWriter {
public:
    PropertyWriter(sd_bus_message* reply, const Names& wanted)
        : reply_(reply)
        , wanted_(wanted) {
        sd_bus_message_open_container(reply_, SD_BUS_TYPE_ARRAY, propertiesType);
    }

    PropertyWriter(const PropertyWriter&) = delete;
    PropertyWriter(PropertyWriter&&) = delete;
    PropertyWriter& operator=(const PropertyWriter&) = delete;
    PropertyWriter& operator=(PropertyWriter&&) = delete;

    ~PropertyWriter() { sd_bus_message_close_container(reply_); }

    template<typename... Values>
    void write(const char* name, const char* type, Values... values) {
        if (wanted_.empty() || std::ranges::find(wanted_, name) != wanted_.end()) {
            sd_bus_message_append(reply_, propertiesType, name, type, values...);
        }
    }

private:
    sd_bus_message* reply_;
    const Names& wanted_;
};

void writeRoot(sd_bus_message* reply, const Names& wanted) {
    PropertyWriter(reply, wanted).write("children-display", "s", "submenu");
}

void writeLine(sd_bus_message* reply, const MenuItem& line, const Names& wanted, BusMenu::KeyNames keyNames) {
    PropertyWriter writer(reply, wanted);
    if (line.isSeparator) {
        writer.write("type", "s", "separator");
        return;
    }
    writer.write("label", "s", exportedLabel(line.text).c_str());
    writer.write("enabled", "b", int{line.isEnabled});
    if (line.isChecked) {
        writer.write("toggle-type", "s", "checkmark");
        writer.write("toggle-state", "i", int{*line.isChecked});
    }
    if (!line.keyEquivalent.empty()) {
        const bool isComma = line.keyEquivalent == "," && keyNames == BusMenu::KeyNames::symbols;
        writer.write("shortcut", "aas", 1, 2, "Control", isComma ? "comma" : line.keyEquivalent.c_str());
    }
}

Names readNames(sd_bus_message* call) {
    Names names;
    const char* name = nullptr;
    sd_bus_message_enter_container(call, SD_BUS_TYPE_ARRAY, "s");
    while (sd_bus_message_read_basic(call, SD_BUS_TYPE_STRING, static_cast<void*>(&name)) > 0) {
        names.emplace_back(name);
    }
    sd_bus_message_exit_container(call);
    return names;
}

std::vector<std::int32_t> readNumbers(sd_bus_message* call) {
    std::vector<std::int32_t> numbers;
    std::int32_t number = 0;
    sd_bus_message_enter_container(call, SD_BUS_TYPE_ARRAY, "i");
    while (sd_bus_message_read_basic(call, SD_BUS_TYPE_INT32, &number) > 0) {
        numbers.push_back(number);
    }
    sd_bus_message_exit_container(call);
    return numbers;
}

} // namespace

// What the bus calls. Messages arrive with the types that the table below announces.
struct BusMenu::Calls {
    static BusMenu& menu(void* self) { return *static_cast<BusMenu*>(self); }

    static int getLayout(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
        BusMenu& menu = Calls::menu(self);
        std::int32_t parent = 0;
        std::int32_t depth = 0;
        sd_bus_message_read(call, "ii", &parent, &depth);
        const auto wanted = readNames(call);
        const bool isRoot = parent == MenuExport::root;
        if (isRoot) {
            menu.update();
        }
        sd_bus_message* reply = nullptr;
        sd_bus_message_new_method_return(call, &reply);
        sd_bus_message_append(reply, "u", menu.menu_.revision());
        sd_bus_message_open_container(reply, SD_BUS_TYPE_STRUCT, "ia{sv}av");
        sd_bus_message_append(reply, "i", parent);
        const auto* line = menu.menu_.find(parent);
        if (line != nullptr) {
            writeLine(reply, *line, wanted, menu.keyNames_);
        } else {
            writeRoot(reply, wanted);
        }
        sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "v");
        if (isRoot && depth != 0) {
            writeChildren(reply, menu, wanted);
        }
        sd_bus_message_close_container(reply);
        sd_bus_message_close_container(reply);
        return send(reply);
    }

    static void writeChildren(sd_bus_message* reply, const BusMenu& menu, const Names& wanted) {
        const auto& lines = menu.menu_.lines();
        for (std::size_t place = 0; place < lines.size(); ++place) {
            sd_bus_message_open_container(reply, SD_BUS_TYPE_VARIANT, "(ia{sv}av)");
            sd_bus_message_open_container(reply, SD_BUS_TYPE_STRUCT, "ia{sv}av");
            sd_bus_message_append(reply, "i", menu.menu_.number(place));
            writeLine(reply, lines[place], wanted, menu.keyNames_);
            sd_bus_message_append(reply, "av", 0);
            sd_bus_message_close_container(reply);
            sd_bus_message_close_container(reply);
        }
    }

    static int getGroupProperties(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
        const BusMenu& menu = Calls::menu(self);
        const MenuExport& exported = menu.menu_;
        auto numbers = readNumbers(call);
        const auto wanted = readNames(call);
        if (numbers.empty()) {
            numbers.push_back(MenuExport::root);
            for (std::size_t place = 0; place < exported.lines().size(); ++place) {
                numbers.push_back(exported.number(place));
            }
        }
        sd_bus_message* reply = nullptr;
        sd_bus_message_new_method_return(call, &reply);
        sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "(ia{sv})");
        for (const auto number : numbers) {
            const auto* line = exported.find(number);
            if (line == nullptr && number != MenuExport::root) {
                continue;
            }
            sd_bus_message_open_container(reply, SD_BUS_TYPE_STRUCT, "ia{sv}");
            sd_bus_message_append(reply, "i", number);
            if (line != nullptr) {
                writeLine(reply, *line, wanted, menu.keyNames_);
            } else {
                writeRoot(reply, wanted);
            }
            sd_bus_message_close_container(reply);
        }
        sd_bus_message_close_container(reply);
        return send(reply);
    }

    static int event(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
        std::int32_t number = 0;
        const char* event = nullptr;
        sd_bus_message_read(call, "is", &number, &event);
        menu(self).happened(number, event);
        return sd_bus_reply_method_return(call, "");
    }

    static int eventGroup(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
        std::vector<std::pair<std::int32_t, std::string>> events;
        sd_bus_message_enter_container(call, SD_BUS_TYPE_ARRAY, "(isvu)");
        while (sd_bus_message_enter_container(call, SD_BUS_TYPE_STRUCT, "isvu") > 0) {
            std::int32_t number = 0;
            const char* event = nullptr;
            sd_bus_message_read(call, "is", &number, &event);
            events.emplace_back(number, event);
            sd_bus_message_skip(call, "vu");
            sd_bus_message_exit_container(call);
        }
        for (const auto& [number, event] : events) {
            menu(self).happened(number, event);
        }
        return sd_bus_reply_method_return(call, "ai", 0);
    }

    static int aboutToShow(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
        std::int32_t number = 0;
        sd_bus_message_read(call, "i", &number);
        const bool hasChanged = number == MenuExport::root && menu(self).update();
        return sd_bus_reply_method_return(call, "b", int{hasChanged});
    }

    static int aboutToShowGroup(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
        const auto numbers = readNumbers(call);
        const bool isOpening = std::ranges::find(numbers, MenuExport::root) != numbers.end();
        if (isOpening && menu(self).update()) {
            return sd_bus_reply_method_return(call, "aiai", 1, MenuExport::root, 0);
        }
        return sd_bus_reply_method_return(call, "aiai", 0, 0);
    }

    static int send(sd_bus_message* reply) {
        const int outcome = sd_bus_send(nullptr, reply, nullptr);
        sd_bus_message_unref(reply);
        return outcome;
    }

    static int version(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/, const char* /*name*/,
                       sd_bus_message* reply, void* /*self*/, sd_bus_error* /*error*/) {
        return sd_bus_message_append(reply, "u", 3);
    }

    static int text(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/, const char* name,
                    sd_bus_message* reply, void* /*self*/, sd_bus_error* /*error*/) {
        const bool isStatus = std::string_view(name) == "Status";
        return sd_bus_message_append(reply, "s", isStatus ? "normal" : "ltr");
    }

    static int iconThemePath(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                             const char* /*name*/, sd_bus_message* reply, void* /*self*/,
                             sd_bus_error* /*error*/) {
        return sd_bus_message_append(reply, "as", 0);
    }

    inline static const auto table = std::to_array<sd_bus_vtable>({
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("GetLayout", "iias", "u(ia{sv}av)", getLayout, 0),
        SD_BUS_METHOD("GetGroupProperties", "aias", "a(ia{sv})", getGroupProperties, 0),
        SD_BUS_METHOD("Event", "isvu", "", event, 0),
        SD_BUS_METHOD("EventGroup", "a(isvu)", "ai", eventGroup, 0),
        SD_BUS_METHOD("AboutToShow", "i", "b", aboutToShow, 0),
        SD_BUS_METHOD("AboutToShowGroup", "ai", "aiai", aboutToShowGroup, 0),
        SD_BUS_PROPERTY("Version", "u", version, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("TextDirection", "s", text, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("Status", "s", text, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("IconThemePath", "as", iconThemePath, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_SIGNAL("LayoutUpdated", "ui", 0),
        SD_BUS_SIGNAL("ItemsPropertiesUpdated", "a(ia{sv})a(ias)", 0),
        SD_BUS_SIGNAL("ItemActivationRequested", "iu", 0),
        SD_BUS_VTABLE_END,
    });
};

BusMenu::KeyNames BusMenu::keyNamesOfSession() {
    const auto names = currentDesktopNames();
    const bool isBuiltWithQt = std::ranges::any_of(names, [](std::string_view name) {
        return name == "KDE" || name == "LXQt" || name == "DDE" || name == "Deepin";
    });
    return isBuiltWithQt ? KeyNames::characters : KeyNames::symbols;
}

BusMenu::BusMenu(SessionBus& bus, Scheduler& scheduler, StatusItem::MakeMenu makeMenu)
    : bus_(bus)
    , scheduler_(scheduler)
    , makeMenu_(std::move(makeMenu)) {
    sd_bus_slot* slot = nullptr;
    sd_bus_add_object_vtable(bus_.get(), &slot, path, interface, Calls::table.data(), this);
    object_.reset(slot);
}

bool BusMenu::update() {
    if (!menu_.update(makeMenu_())) {
        return false;
    }
    sd_bus_emit_signal(bus_.get(), path, interface, "LayoutUpdated", "ui", menu_.revision(),
                       MenuExport::root);
    return true;
}

void BusMenu::happened(std::int32_t number, const std::string& event) {
    if (event == "opened" && number == MenuExport::root) {
        update();
    }
    const auto* line = menu_.find(number);
    if (event == "clicked" && line != nullptr && line->isEnabled && line->action) {
        later(line->action);
    }
}

// An action may wait for the person, and the bus must be served meanwhile.
void BusMenu::later(std::function<void()> action) {
    clicked_.emplace_front();
    const auto place = clicked_.begin();
    *place = scheduler_.after(std::chrono::milliseconds(0), [this, place, action = std::move(action)] {
        const auto running = std::move(*place);
        clicked_.erase(place);
        action();
    });
}

} // namespace karto
