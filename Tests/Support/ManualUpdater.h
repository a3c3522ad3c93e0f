#pragma once
// An updater that finds what the test says.

#include "Karto/Platform/UpdaterEngine.h"

#include <string>
#include <utility>

namespace karto::testing {

class ManualUpdater final : public UpdaterEngine {
public:
    int checks = 0;
    bool checksAutomatically = true;
    std::shared_ptr<UpdaterDelegate> delegate;

    // A scheduled check, up to the point where the update is shown or left to the delegate.
    void find(const std::string& version) const {
        delegate->willHandleShowingUpdate(delegate->shouldHandleShowingScheduledUpdate(version, true),
                                          version);
    }

    void setDelegate(std::shared_ptr<UpdaterDelegate> newDelegate) override {
        delegate = std::move(newDelegate);
    }

    void start() override {}

    void checkForUpdates() override { ++checks; }

    [[nodiscard]] bool automaticallyChecksForUpdates() const override { return checksAutomatically; }

    void setAutomaticallyChecksForUpdates(bool checksThem) override { checksAutomatically = checksThem; }
};

} // namespace karto::testing
