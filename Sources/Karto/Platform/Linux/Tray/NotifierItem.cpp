#include "Karto/Platform/Linux/Tray/NotifierItem.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace karto {

namespace {

constexpr auto interface = "org.kde.StatusNotifierItem";

// What panels of usual heights show, and twice as much for dense screens.
constexpr std::array iconSides{16, 22, 24, 32, 44, 48, 64};

// Alpha, red, green and blue of every pixel, colours not premultiplied.
std::vector<std::uint8_t> exportedPixels(const Image& image) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(image.pixels.size() * 4);
    for (const auto pixel : image.pixels) {
        const auto alpha = pixel >> 24U;
        bytes.push_back(static_cast<std::uint8_t>(alpha));
        for (const unsigned shift : {16U, 8U, 0U}) {
            const auto channel = pixel >> shift & 0xFFU;
            bytes.push_back(static_cast<std::uint8_t>(alpha == 0 ? 0 : (channel * 255 + alpha / 2) / alpha));
        }
    }
    return bytes;
}

int appendImage(sd_bus_message* reply, const Image& image) {
    const auto bytes = exportedPixels(image);
    sd_bus_message_open_container(reply, SD_BUS_TYPE_STRUCT, "iiay");
    sd_bus_message_append(reply, "ii", image.width, image.height);
    sd_bus_message_append_array(reply, SD_BUS_TYPE_BYTE, bytes.data(), bytes.size());
    return sd_bus_message_close_container(reply);
}

} // namespace

// What the bus calls.
struct NotifierItem::Calls {
    static const NotifierItem& item(void* self) { return *static_cast<const NotifierItem*>(self); }

    static int text(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/, const char* name,
                    sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
        return sd_bus_message_append(reply, "s", textOf(item(self), name).c_str());
    }

    static std::string textOf(const NotifierItem& item, std::string_view property) {
        if (property == "Category") {
            return "ApplicationStatus";
        }
        if (property == "Id") {
            return "karto";
        }
        if (property == "Status") {
            return "Active";
        }
        const bool isLabel = property == "Title" || property == "IconAccessibleDesc";
        return isLabel ? item.face_.accessibleLabel : "";
    }

    static int windowId(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                        const char* /*name*/, sd_bus_message* reply, void* /*self*/,
                        sd_bus_error* /*error*/) {
        return sd_bus_message_append(reply, "i", 0);
    }

    static int isMenu(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/, const char* /*name*/,
                      sd_bus_message* reply, void* /*self*/, sd_bus_error* /*error*/) {
        return sd_bus_message_append(reply, "b", 1);
    }

    static int menu(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/, const char* /*name*/,
                    sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
        return sd_bus_message_append(reply, "o", item(self).menuPath_);
    }

    static int icon(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/, const char* /*name*/,
                    sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
        const NotifierItem& item = Calls::item(self);
        sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "(iiay)");
        for (const int side : iconSides) {
            appendImage(
                reply,
                item.drawIcon_({.side = side, .ink = item.ink_, .hasUpdateMark = item.face_.hasUpdateMark}));
        }
        return sd_bus_message_close_container(reply);
    }

    static int noIcon(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/, const char* /*name*/,
                      sd_bus_message* reply, void* /*self*/, sd_bus_error* /*error*/) {
        return sd_bus_message_append(reply, "a(iiay)", 0);
    }

    static int toolTip(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/, const char* /*name*/,
                       sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
        return sd_bus_message_append(reply, "(sa(iiay)ss)", "", 0, item(self).face_.accessibleLabel.c_str(),
                                     "");
    }

    static int activate(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
        item(self).onActivate_();
        return sd_bus_reply_method_return(call, "");
    }

    static int nothing(sd_bus_message* call, void* /*self*/, sd_bus_error* /*error*/) {
        return sd_bus_reply_method_return(call, "");
    }

    inline static const auto table = std::to_array<sd_bus_vtable>({
        SD_BUS_VTABLE_START(0),
        SD_BUS_PROPERTY("Category", "s", text, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("Id", "s", text, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("Title", "s", text, 0, 0),
        SD_BUS_PROPERTY("Status", "s", text, 0, 0),
        SD_BUS_PROPERTY("WindowId", "i", windowId, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("IconThemePath", "s", text, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("IconName", "s", text, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("IconPixmap", "a(iiay)", icon, 0, 0),
        SD_BUS_PROPERTY("IconAccessibleDesc", "s", text, 0, 0),
        SD_BUS_PROPERTY("OverlayIconName", "s", text, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("OverlayIconPixmap", "a(iiay)", noIcon, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("AttentionIconName", "s", text, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("AttentionIconPixmap", "a(iiay)", noIcon, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("AttentionMovieName", "s", text, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("ToolTip", "(sa(iiay)ss)", toolTip, 0, 0),
        SD_BUS_PROPERTY("ItemIsMenu", "b", isMenu, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("Menu", "o", menu, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_METHOD("Activate", "ii", "", activate, 0),
        SD_BUS_METHOD("ContextMenu", "ii", "", activate, 0),
        SD_BUS_METHOD("SecondaryActivate", "ii", "", nothing, 0),
        SD_BUS_METHOD("Scroll", "is", "", nothing, 0),
        SD_BUS_SIGNAL("NewTitle", "", 0),
        SD_BUS_SIGNAL("NewIcon", "", 0),
        SD_BUS_SIGNAL("NewAttentionIcon", "", 0),
        SD_BUS_SIGNAL("NewOverlayIcon", "", 0),
        SD_BUS_SIGNAL("NewToolTip", "", 0),
        SD_BUS_SIGNAL("NewStatus", "s", 0),
        SD_BUS_VTABLE_END,
    });
};

NotifierItem::NotifierItem(SessionBus& bus, const char* menuPath, std::function<void()> onActivate)
    : bus_(bus)
    , menuPath_(menuPath)
    , onActivate_(std::move(onActivate)) {
    sd_bus_slot* slot = nullptr;
    sd_bus_add_object_vtable(bus_.get(), &slot, path, interface, Calls::table.data(), this);
    object_.reset(slot);
}

void NotifierItem::show(StatusItem::DrawIcon drawIcon, const StatusItemFace& face, const RGBColor& ink) {
    drawIcon_ = std::move(drawIcon);
    const bool hasNewLabel = face.accessibleLabel != face_.accessibleLabel;
    const bool hasNewIcon = face.hasUpdateMark != face_.hasUpdateMark || ink != ink_;
    face_ = face;
    ink_ = ink;
    if (hasNewLabel) {
        tell("NewTitle");
        tell("NewToolTip");
    }
    if (hasNewIcon) {
        tell("NewIcon");
    }
}

void NotifierItem::tell(const char* change) const {
    sd_bus_emit_signal(bus_.get(), path, interface, change, "");
}

} // namespace karto
