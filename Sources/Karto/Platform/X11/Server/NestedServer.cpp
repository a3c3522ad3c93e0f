#include "Karto/Platform/X11/Server/NestedServer.h"

#include <xcb/xinput.h>

#include <string_view>

namespace karto::x11 {

bool runsInsideWayland(Connection& connection) {
    const auto* input = xcb_get_extension_data(connection.get(), &xcb_input_id);
    if (input == nullptr || input->present == 0) {
        return false;
    }
    // Such a server names its pointers and keyboards after itself.
    const auto devices = connection.await<xcb_input_list_input_devices_reply_t>(
        xcb_input_list_input_devices(connection.get()), deadlineFromNow());
    if (!devices) {
        return false;
    }
    for (auto names = xcb_input_list_input_devices_names_iterator(devices.get()); names.rem > 0;
         xcb_str_next(&names)) {
        const std::string_view name(xcb_str_name(names.data),
                                    static_cast<std::size_t>(xcb_str_name_length(names.data)));
        if (name.starts_with("xwayland-")) {
            return true;
        }
    }
    return false;
}

} // namespace karto::x11
