#pragma once
// What is painted on the screen and when, as the server reports it. Where a compositor paints the screen it
// would be the compositor's doing.

#include "XServer.h"

#include <vector>

namespace karto::bench {

struct Stroke {
    Clock::time_point time;
    Box area;
};

class Paintings {
public:
    // Hears of everything from now on, by the connection, which is to be used for nothing else.
    explicit Paintings(const XServer& server);

    // What has been painted and not been asked for yet, up to that time, which is waited for.
    [[nodiscard]] std::vector<Stroke> until(Clock::time_point deadline) const;
    // The same until nothing has been painted for so long.
    [[nodiscard]] std::vector<Stroke> untilQuietFor(Clock::duration time) const;

private:
    [[nodiscard]] bool add(Clock::time_point deadline, std::vector<Stroke>& strokes) const;

    const XServer& server_;
    std::uint8_t eventType_ = 0;
};

} // namespace karto::bench
