#pragma once
// Watches the modifier keys through the platform, which reports them whichever program is in front.

#include "Karto/Adapters/ModifierWatching.h"
#include "Karto/Platform/ModifierEvents.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/WeakCallbacks.h"

namespace karto {

class ModifierMonitor final : public ModifierWatching {
public:
    explicit ModifierMonitor(ModifierEvents& events);

    void start(std::function<void(ModifierSet)> onChange) override;

private:
    ModifierEvents& events_;
    Registration monitor_;
    WeakCallbacks callbacks_;
};

} // namespace karto
