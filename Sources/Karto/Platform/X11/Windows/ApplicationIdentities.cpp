#include "Karto/Platform/X11/Windows/ApplicationIdentities.h"

#include <algorithm>
#include <array>

namespace karto::x11 {

std::vector<std::string> readIdentities(Connection& connection, xcb_window_t window) {
    const auto& atoms = connection.atoms();
    const std::array requests{requestProperty(connection, window, atoms.kdeNetWmDesktopFile, XCB_ATOM_ANY),
                              requestProperty(connection, window, atoms.gtkApplicationId, XCB_ATOM_ANY),
                              requestProperty(connection, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING)};
    const auto deadline = deadlineFromNow();
    std::vector<std::string> identities;
    for (const auto& request : requests) {
        const auto reply = connection.await<xcb_get_property_reply_t>(request, deadline);
        // The instance comes before the class, which says more, and a null character ends each.
        const auto names = text(reply.get());
        const auto separator = std::min(names.find('\0'), names.size());
        const auto second = names.substr(std::min(separator + 1, names.size()));
        identities.emplace_back(second.substr(0, second.find('\0')));
        identities.emplace_back(names.substr(0, separator));
    }
    std::erase(identities, "");
    return identities;
}

} // namespace karto::x11
