#include "Karto/Adapters/UpdaterService.h"

#include <utility>

namespace karto {

GentleReminder::GentleReminder(std::function<void(const std::string& version)> onScheduledUpdate,
                               std::function<void()> onAttention)
    : onScheduledUpdate_(std::move(onScheduledUpdate))
    , onAttention_(std::move(onAttention)) {}

void GentleReminder::willHandleShowingUpdate(bool engineShowsIt, const std::string& version) {
    if (!engineShowsIt) {
        onScheduledUpdate_(version);
    }
}

void GentleReminder::didReceiveUserAttention() { onAttention_(); }

void GentleReminder::willFinishUpdateSession() { onAttention_(); }

UpdaterService::UpdaterService(UpdaterEngine& engine)
    : engine_(engine) {
    engine_.setDelegate(std::make_shared<GentleReminder>(
        callbacks_.wrap([this](const std::string& version) { noteScheduledUpdate(version); }),
        callbacks_.wrap([this] { forgetScheduledUpdate(); })));
}

void UpdaterService::noteScheduledUpdate(const std::string& version) { setPendingVersion(version); }

void UpdaterService::forgetScheduledUpdate() { setPendingVersion(std::nullopt); }

void UpdaterService::setPendingVersion(std::optional<std::string> version) {
    if (version == pendingVersion_) {
        return;
    }
    pendingVersion_ = std::move(version);
    if (onPendingVersionChange) {
        onPendingVersionChange();
    }
}

} // namespace karto
