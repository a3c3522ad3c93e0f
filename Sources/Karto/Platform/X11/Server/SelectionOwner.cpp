#include "Karto/Platform/X11/Server/SelectionOwner.h"

#include "Karto/Platform/X11/Server/Extensions.h"

#include <fmt/format.h>

#include <utility>

namespace karto::x11 {

SelectionOwner::SelectionOwner(Connection& connection, std::string_view prefix,
                               std::function<void()> onChange)
    : onChange_(std::move(onChange)) {
    const auto name = fmt::format("{}{}", prefix, connection.screenNumber());
    const auto atom = connection.await<xcb_intern_atom_reply_t>(
        xcb_intern_atom(connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
        deadlineFromNow(startBound));
    if (!atom) {
        return;
    }
    selection_ = atom->atom;
    // The server takes the other requests once it has been told a version.
    const auto announced = xcb_xfixes_query_version(connection.get(), 5, 0);
    xcb_discard_reply(connection.get(), announced.sequence);
    xcb_xfixes_select_selection_input(connection.get(), connection.root(), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    const int news =
        xcb_get_extension_data(connection.get(), &xcb_xfixes_id)->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    events_ = connection.observe([this, news](const xcb_generic_event_t& event) {
        if (eventCode(event) == news) {
            note(eventAs<xcb_xfixes_selection_notify_event_t>(event));
        }
    });
    const auto owner = connection.await<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(connection.get(), selection_), deadlineFromNow(startBound));
    if (owner) {
        owner_ = owner->owner;
    }
}

void SelectionOwner::note(const xcb_xfixes_selection_notify_event_t& news) {
    if (news.selection == selection_ && news.owner != owner_) {
        owner_ = news.owner;
        onChange_();
    }
}

} // namespace karto::x11
