#pragma once
// A login item that keeps its state, and fails when it is told to.

#include "Karto/Platform/LoginItemService.h"

#include <optional>
#include <string>

namespace karto::testing {

class MemoryLoginItem final : public LoginItemService {
public:
    LoginItemStatus current = LoginItemStatus::notRegistered;
    std::optional<std::string> failure;
    int settingsOpened = 0;

    LoginItemStatus status() override { return current; }

    std::expected<void, std::string> registerItem() override { return change(LoginItemStatus::enabled); }

    std::expected<void, std::string> unregisterItem() override {
        return change(LoginItemStatus::notRegistered);
    }

    void openSettings() override { ++settingsOpened; }

private:
    std::expected<void, std::string> change(LoginItemStatus status) {
        if (failure) {
            return std::unexpected(*failure);
        }
        current = status;
        return {};
    }
};

} // namespace karto::testing
