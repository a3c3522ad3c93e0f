#pragma once
// Whether this program is the one that the person works with: one of its own windows is the active one.

#include "Karto/Platform/Registration.h"

#include <functional>

namespace karto {

class ApplicationActivity {
public:
    virtual ~ApplicationActivity() = default;

    [[nodiscard]] virtual bool isActive() const = 0;
    // Called with the new state after every change.
    [[nodiscard]] virtual Registration observe(std::function<void(bool isActive)> onChange) = 0;
};

} // namespace karto
