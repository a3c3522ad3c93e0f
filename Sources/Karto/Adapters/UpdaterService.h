#pragma once
// Updates of the program: a scheduled check that finds one leaves a quiet mark, and shows no window.

#include "Karto/Platform/UpdaterEngine.h"
#include "Karto/Platform/WeakCallbacks.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace karto {

// Answers the engine for the service, and does nothing once the service is gone.
class GentleReminder final : public UpdaterDelegate {
public:
    GentleReminder(std::function<void(const std::string& version)> onScheduledUpdate,
                   std::function<void()> onAttention);

    [[nodiscard]] bool supportsGentleScheduledUpdateReminders() const override { return true; }

    [[nodiscard]] bool shouldHandleShowingScheduledUpdate(const std::string& /*version*/,
                                                          bool /*isInImmediateFocus*/) const override {
        return false;
    }

    void willHandleShowingUpdate(bool engineShowsIt, const std::string& version) override;
    void didReceiveUserAttention() override;
    void willFinishUpdateSession() override;

private:
    std::function<void(const std::string& version)> onScheduledUpdate_;
    std::function<void()> onAttention_;
};

class UpdaterService {
public:
    explicit UpdaterService(UpdaterEngine& engine);

    // Called after every change of the pending version.
    std::function<void()> onPendingVersionChange;

    // An update that a scheduled check has found and nobody has seen yet.
    [[nodiscard]] const std::optional<std::string>& pendingVersion() const { return pendingVersion_; }

    [[nodiscard]] UpdaterEngine& engine() { return engine_; }

    void noteScheduledUpdate(const std::string& version);
    void forgetScheduledUpdate();

private:
    void setPendingVersion(std::optional<std::string> version);

    UpdaterEngine& engine_;
    std::optional<std::string> pendingVersion_;
    WeakCallbacks callbacks_;
};

} // namespace karto
