#pragma once
// A hand on the pointer, through the server's XTEST extension. Places are pixels of the desktop.

#include "XServer.h"

#include <cstdint>

namespace karto::bench {

class Hand {
public:
    explicit Hand(const XServer& server)
        : server_(server) {}

    void move(int x, int y) const;
    // The main button.
    void press() const;
    void release() const;
    // One notch of the wheel.
    void scroll(bool isDown) const;
    // Against snapping.
    void holdOption() const;
    void releaseOption() const;

private:
    void fake(std::uint8_t event, std::uint8_t detail, int x = 0, int y = 0) const;

    const XServer& server_;
};

} // namespace karto::bench
