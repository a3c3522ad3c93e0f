#include "Karto/Platform/X11/Server/TopLevel.h"

namespace karto::x11 {

namespace {

// Windows around a client, more than any manager puts there.
constexpr int deepestFrame = 8;

} // namespace

std::optional<xcb_window_t> topLevelOf(Connection& connection, xcb_window_t window, Deadline deadline) {
    for (int depth = 0; depth < deepestFrame; ++depth) {
        const auto tree =
            connection.await<xcb_query_tree_reply_t>(xcb_query_tree(connection.get(), window), deadline);
        if (!tree) {
            return std::nullopt;
        }
        if (tree->parent == connection.root()) {
            return window;
        }
        window = tree->parent;
    }
    return std::nullopt;
}

} // namespace karto::x11
