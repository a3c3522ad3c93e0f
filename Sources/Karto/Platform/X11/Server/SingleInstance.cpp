#include "Karto/Platform/X11/Server/SingleInstance.h"

#include <algorithm>
#include <utility>

namespace karto::x11 {

SingleInstance::SingleInstance(Connection& connection)
    : connection_(connection)
    , window_(xcb_generate_id(connection.get())) {
    xcb_create_window(connection.get(), 0, window_, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
}

std::expected<SingleInstance::Outcome, std::string> SingleInstance::claim() {
    // A selection has one owner, and the server takes it back when that one's connection ends.
    const auto selection = connection_.atoms().kartoAgent;
    // Two that start together must not both find it free.
    xcb_grab_server(connection_.get());
    const auto ownerRequest = xcb_get_selection_owner(connection_.get(), selection);
    const auto owner =
        connection_.await<xcb_get_selection_owner_reply_t>(ownerRequest, deadlineFromNow(startBound));
    const bool isFree = owner && owner->owner == XCB_WINDOW_NONE;
    if (isFree) {
        xcb_set_selection_owner(connection_.get(), window_, selection, XCB_CURRENT_TIME);
    }
    xcb_ungrab_server(connection_.get());
    connection_.flush();
    if (!owner) {
        return std::unexpected(sentenceOfSilence());
    }
    if (isFree) {
        return Outcome::claimed;
    }
    if (tell(owner->owner)) {
        return Outcome::handedOver;
    }
    return std::unexpected("Karto is running on this display already, and does not answer");
}

bool SingleInstance::tell(xcb_window_t owner) {
    const auto deadline = deadlineFromNow(startBound);
    auto mark = connection_.eventMark();
    send(owner);
    while (std::chrono::steady_clock::now() < deadline && !connection_.broken()) {
        const auto fresh = connection_.awaitEvents(mark, deadline);
        if (std::ranges::any_of(fresh, [this](const auto* event) { return isForUs(*event); })) {
            return true;
        }
        mark = connection_.eventMark();
    }
    return false;
}

Registration SingleInstance::observeFurtherStarts(std::function<void()> onStart) {
    if (!events_) {
        events_ = connection_.observe([this](const xcb_generic_event_t& event) {
            if (isForUs(event)) {
                send(eventAs<xcb_client_message_event_t>(event).data.data32[0]);
                observers_.notify();
            }
        });
    }
    return observers_.add(std::move(onStart));
}

void SingleInstance::giveWay() {
    xcb_set_selection_owner(connection_.get(), XCB_WINDOW_NONE, connection_.atoms().kartoAgent,
                            XCB_CURRENT_TIME);
    connection_.flush();
}

void SingleInstance::send(xcb_window_t to) const {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = to;
    message.type = connection_.atoms().kartoAgent;
    message.data.data32[0] = window_;
    xcb_send_event(connection_.get(), 0, to, XCB_EVENT_MASK_NO_EVENT,
                   // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
                   reinterpret_cast<const char*>(&message));
    connection_.flush();
}

bool SingleInstance::isForUs(const xcb_generic_event_t& event) const {
    if (eventCode(event) != XCB_CLIENT_MESSAGE) {
        return false;
    }
    const auto& message = eventAs<xcb_client_message_event_t>(event);
    return message.window == window_ && message.type == connection_.atoms().kartoAgent;
}

} // namespace karto::x11
