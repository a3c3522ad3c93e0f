#pragma once
// Has the system's package installer replace the program by a newer one.

#include "Karto/Platform/Registration.h"

#include <cstdint>
#include <functional>
#include <string>

namespace karto {

struct InstallOutcome {
    enum class Kind : std::uint8_t {
        installed,
        // The person did not allow it.
        refused,
        // There is no installer, or nothing to ask the person with.
        unavailable,
        failed,
    };

    Kind kind = Kind::installed;
    // For what failed: a clause for a person.
    std::string problem;

    bool operator==(const InstallOutcome&) const = default;
};

class UpdateInstaller {
public:
    virtual ~UpdateInstaller() = default;

    // Whether the running program was installed from a package, so that another package replaces it.
    [[nodiscard]] virtual bool replacesProgram() = 0;
    // Reports from the event loop. Ending the registration stops the installation as long as the person has
    // not allowed it, and nothing more is heard of it.
    [[nodiscard]] virtual Registration install(const std::string& package,
                                               std::function<void(const InstallOutcome&)> onEnd) = 0;

    // Shows the file in the desktop's file manager.
    virtual void showFile(const std::string& path) = 0;
    virtual void openPage(const std::string& address) = 0;
    // Ends the program and starts the one that was installed in its place.
    virtual void restart() = 0;
};

} // namespace karto
