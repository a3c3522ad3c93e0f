#include "Support/Mouse.h"

#include <xcb/xtest.h>

namespace karto::desktop {

void Mouse::move(Point to) const { send(XCB_MOTION_NOTIFY, 0, to); }

void Mouse::press() const { send(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1, {}); }

void Mouse::release() const { send(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1, {}); }

void Mouse::send(std::uint8_t type, std::uint8_t detail, Point place) const {
    xcb_test_fake_input(client_.connection(), type, detail, XCB_CURRENT_TIME, client_.root(),
                        static_cast<std::int16_t>(place.x), static_cast<std::int16_t>(place.y), 0);
    client_.flush();
}

} // namespace karto::desktop
