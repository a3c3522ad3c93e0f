#pragma once
// One Karto a display: a second one would find every shortcut taken. The first one owns a selection; a later
// one sends the owner's window a message, and the owner answers to a window of the later one.

#include "Karto/Platform/Instance.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <cstdint>
#include <expected>
#include <string>

namespace karto::x11 {

class SingleInstance final : public Instance {
public:
    enum class Outcome : std::uint8_t {
        // This program is the display's Karto, for as long as the connection lasts.
        claimed,
        // Another one is, and knows now that the program was started once more.
        handedOver,
    };

    explicit SingleInstance(Connection& connection);

    // The error is a sentence for a person.
    std::expected<Outcome, std::string> claim();

    [[nodiscard]] Registration observeFurtherStarts(std::function<void()> onStart) override;
    void giveWay() override;

private:
    bool tell(xcb_window_t owner);
    void send(xcb_window_t to) const;
    [[nodiscard]] bool isForUs(const xcb_generic_event_t& event) const;

    Connection& connection_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    Observers<> observers_;
    Registration events_;
};

} // namespace karto::x11
