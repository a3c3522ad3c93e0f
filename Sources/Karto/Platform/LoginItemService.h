#pragma once
// Whether the desktop starts the program at login.

#include <cstdint>
#include <expected>
#include <string>

namespace karto {

enum class LoginItemStatus : std::uint8_t {
    notRegistered = 0,
    enabled = 1,
    // The person has switched it off in the desktop's own settings, where alone it can be switched on again.
    requiresApproval = 2,
    // What stands in its place does not start this program.
    notFound = 3,
};

class LoginItemService {
public:
    virtual ~LoginItemService() = default;

    virtual LoginItemStatus status() = 0;

    // The error is a sentence for a person.
    virtual std::expected<void, std::string> registerItem() = 0;
    virtual std::expected<void, std::string> unregisterItem() = 0;

    // Opens the place of the desktop's settings that lists what starts at login.
    virtual void openSettings() = 0;
};

} // namespace karto
