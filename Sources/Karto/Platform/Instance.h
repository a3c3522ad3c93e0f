#pragma once
// The one Karto of this display.

#include "Karto/Platform/Registration.h"

#include <functional>

namespace karto {

class Instance {
public:
    virtual ~Instance() = default;

    // Hears when a person starts the program once more.
    [[nodiscard]] virtual Registration observeFurtherStarts(std::function<void()> onStart) = 0;
    // Lets a further start run instead of this program, which is about to end.
    virtual void giveWay() = 0;
};

} // namespace karto
