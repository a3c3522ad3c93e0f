#pragma once
// A hand on the pointer, through the server's own test extension. Points are pixels of the desktop.

#include "KartoCore/Geometry.h"
#include "Support/XClient.h"

namespace karto::desktop {

class Mouse {
public:
    explicit Mouse(const XClient& client)
        : client_(client) {}

    void move(Point to) const;
    // The main button.
    void press() const;
    void release() const;

    void press(Point at) const {
        move(at);
        press();
    }

    void click(Point at) const {
        press(at);
        release();
    }

private:
    void send(std::uint8_t type, std::uint8_t detail, Point place) const;

    const XClient& client_;
};

} // namespace karto::desktop
