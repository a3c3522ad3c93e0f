#pragma once
// Start at login.

#include "Karto/Platform/LoginItemService.h"

#include <optional>
#include <string>

namespace karto {

class LoginItem {
public:
    explicit LoginItem(LoginItemService& service)
        : service_(service) {}

    [[nodiscard]] LoginItemStatus status() const { return service_.status(); }

    // Why it could not be switched; absent on success.
    std::optional<std::string> setEnabled(bool isEnabled);

    void openSettings() { service_.openSettings(); }

private:
    LoginItemService& service_;
};

} // namespace karto
