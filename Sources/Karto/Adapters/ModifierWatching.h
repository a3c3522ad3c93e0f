#pragma once
// Reports the modifier keys held, every time they change, whichever program is in front.

#include "KartoCore/ModifierSet.h"

#include <functional>

namespace karto {

class ModifierWatching {
public:
    virtual ~ModifierWatching() = default;

    // Reports the whole set now held, first after the first change. A second start does nothing.
    virtual void start(std::function<void(ModifierSet)> onChange) = 0;

    // The set held now.
    virtual ModifierSet held() = 0;
};

} // namespace karto
