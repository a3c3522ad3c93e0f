#include "Karto/Adapters/ModifierMonitor.h"

#include "Karto/Adapters/KeyCodes.h"

#include <utility>

namespace karto {

ModifierMonitor::ModifierMonitor(ModifierEvents& events)
    : events_(events) {}

void ModifierMonitor::start(std::function<void(ModifierSet)> onChange) {
    if (monitor_) {
        return;
    }
    monitor_ = events_.observe(callbacks_.wrap(
        [onChange = std::move(onChange)](ModifierFlags held) { onChange(modifierSet(held)); }));
}

} // namespace karto
