#pragma once
// The connected screens.

#include "Karto/Platform/Registration.h"
#include "KartoCore/Geometry.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace karto {

// Where y grows in the platform's own screen space. The origin is a corner of the first screen.
enum class VerticalAxis : std::uint8_t { down, up };

struct Screen {
    // What the system calls it; empty when it reports no name.
    std::string name;
    // The whole screen, in the platform's own space.
    Rect frame;
    // The part that panels leave free, in the same space.
    Rect visibleFrame;

    bool operator==(const Screen&) const = default;
};

class Screens {
public:
    virtual ~Screens() = default;

    // The primary screen first.
    virtual std::vector<Screen> screens() = 0;

    [[nodiscard]] virtual VerticalAxis verticalAxis() const = 0;

    // Called after screens came, went, moved or were resized, and after panels changed what they leave free.
    virtual Registration observeChanges(std::function<void()> onChange) = 0;
};

} // namespace karto
