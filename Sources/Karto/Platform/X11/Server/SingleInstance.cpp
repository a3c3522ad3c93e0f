#include "Karto/Platform/X11/Server/SingleInstance.h"

namespace karto::x11 {

namespace {

void takeSelection(const Connection& connection, xcb_atom_t selection) {
    const xcb_window_t window = xcb_generate_id(connection.get());
    xcb_create_window(connection.get(), 0, window, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(connection.get(), window, selection, XCB_CURRENT_TIME);
}

} // namespace

std::expected<void, std::string> claimDisplay(Connection& connection) {
    // A selection has one owner, and the server takes it back when that one's connection ends.
    const auto selection = connection.atoms().kartoAgent;
    // Two that start together must not both find it free.
    xcb_grab_server(connection.get());
    const auto ownerRequest = xcb_get_selection_owner(connection.get(), selection);
    const auto owner =
        connection.await<xcb_get_selection_owner_reply_t>(ownerRequest, deadlineFromNow(startBound));
    const bool isFree = owner && owner->owner == XCB_WINDOW_NONE;
    if (isFree) {
        takeSelection(connection, selection);
    }
    xcb_ungrab_server(connection.get());
    connection.flush();
    if (!owner) {
        return std::unexpected(sentenceOfSilence());
    }
    if (!isFree) {
        return std::unexpected("Karto is running on this display already");
    }
    return {};
}

} // namespace karto::x11
