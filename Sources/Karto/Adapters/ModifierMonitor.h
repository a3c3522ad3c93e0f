#pragma once
// Watches the modifier keys through the platform, which reports them whichever program is in front. While
// some are held it also looks now and then whether they still are: a release may go unreported when the
// screen is locked, the session is switched or the keyboard is unplugged.

#include "Karto/Adapters/ModifierWatching.h"
#include "Karto/Platform/ModifierEvents.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"

namespace karto {

class ModifierMonitor final : public ModifierWatching {
public:
    ModifierMonitor(ModifierEvents& events, Scheduler& scheduler);

    void start(std::function<void(ModifierSet)> onChange) override;
    ModifierSet held() override;

private:
    void report(ModifierSet held);
    void lookLater(ModifierSet reported);

    ModifierEvents& events_;
    Scheduler& scheduler_;
    std::function<void(ModifierSet)> onChange_;
    Registration monitor_;
    Registration nextLook_;
    WeakCallbacks callbacks_;
};

} // namespace karto
