#include "Karto/Adapters/ModifierMonitor.h"

#include "Karto/Adapters/KeyCodes.h"

#include <chrono>
#include <utility>

namespace karto {

namespace {

constexpr std::chrono::milliseconds lookInterval{500};

} // namespace

ModifierMonitor::ModifierMonitor(ModifierEvents& events, Scheduler& scheduler)
    : events_(events)
    , scheduler_(scheduler) {}

void ModifierMonitor::start(std::function<void(ModifierSet)> onChange) {
    if (monitor_) {
        return;
    }
    onChange_ = std::move(onChange);
    monitor_ = events_.observe(callbacks_.wrap([this](ModifierFlags flags) { report(modifierSet(flags)); }));
}

ModifierSet ModifierMonitor::held() { return modifierSet(events_.held()); }

void ModifierMonitor::report(ModifierSet held) {
    lookLater(held);
    onChange_(held);
}

void ModifierMonitor::lookLater(ModifierSet reported) {
    if (reported.empty()) {
        nextLook_.reset();
        return;
    }
    nextLook_ = scheduler_.after(lookInterval, callbacks_.wrap([this, reported] {
        const auto now = held();
        if (now != reported) {
            report(now);
        } else {
            lookLater(now);
        }
    }));
}

} // namespace karto
