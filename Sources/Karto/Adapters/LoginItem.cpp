#include "Karto/Adapters/LoginItem.h"

namespace karto {

std::optional<std::string> LoginItem::setEnabled(bool isEnabled) {
    const auto outcome = isEnabled ? service_.registerItem() : service_.unregisterItem();
    return outcome ? std::nullopt : std::optional(outcome.error());
}

} // namespace karto
