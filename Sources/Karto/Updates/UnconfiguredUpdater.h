#pragma once
// The updates of a build that was given neither an address to ask nor a key to check the answer with.

#include "Karto/Platform/ApplicationHost.h"
#include "Karto/Platform/UpdaterEngine.h"

namespace karto {

class UnconfiguredUpdater final : public UpdaterEngine {
public:
    explicit UnconfiguredUpdater(ApplicationHost& host)
        : host_(host) {}

    void setDelegate(std::shared_ptr<UpdaterDelegate> /*delegate*/) override {}

    void start() override {}

    // Says why there is nothing to check.
    void checkForUpdates() override;

    // Cannot be switched on.
    [[nodiscard]] bool automaticallyChecksForUpdates() const override { return false; }

    void setAutomaticallyChecksForUpdates(bool checks) override {
        if (checks) {
            checkForUpdates();
        }
    }

private:
    ApplicationHost& host_;
    bool isTelling_ = false;
};

} // namespace karto
