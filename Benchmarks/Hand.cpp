#include "Hand.h"

#include <xcb/xtest.h>

namespace karto::bench {
namespace {

constexpr xcb_keysym_t optionSymbol = 0xFFE9;

} // namespace

void Hand::move(int x, int y) const { fake(XCB_MOTION_NOTIFY, 0, x, y); }

void Hand::press() const { fake(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1); }

void Hand::release() const { fake(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1); }

void Hand::scroll(bool isDown) const {
    const std::uint8_t button = isDown ? XCB_BUTTON_INDEX_5 : XCB_BUTTON_INDEX_4;
    fake(XCB_BUTTON_PRESS, button);
    fake(XCB_BUTTON_RELEASE, button);
}

void Hand::holdOption() const { fake(XCB_KEY_PRESS, server_.keyCode(optionSymbol)); }

void Hand::releaseOption() const { fake(XCB_KEY_RELEASE, server_.keyCode(optionSymbol)); }

void Hand::fake(std::uint8_t event, std::uint8_t detail, int x, int y) const {
    xcb_test_fake_input(server_.connection(), event, detail, XCB_CURRENT_TIME, server_.root(),
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    xcb_flush(server_.connection());
}

} // namespace karto::bench
