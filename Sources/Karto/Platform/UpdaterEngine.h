#pragma once
// Finds new versions of the program, shows them and installs them.

#include <memory>
#include <string>

namespace karto {

// What the engine asks before it shows an update, and reports meanwhile; all on the main thread.
class UpdaterDelegate {
public:
    virtual ~UpdaterDelegate() = default;

    // Whether somebody reminds the person of an update that the engine does not show.
    [[nodiscard]] virtual bool supportsGentleScheduledUpdateReminders() const = 0;
    // Whether the engine is to show what a scheduled check has found.
    [[nodiscard]] virtual bool shouldHandleShowingScheduledUpdate(const std::string& version,
                                                                  bool isInImmediateFocus) const = 0;
    // The engine shows the update itself, or else leaves that to the delegate.
    virtual void willHandleShowingUpdate(bool engineShowsIt, const std::string& version) = 0;
    // The person has attended to the update.
    virtual void didReceiveUserAttention() = 0;
    virtual void willFinishUpdateSession() = 0;
};

class UpdaterEngine {
public:
    virtual ~UpdaterEngine() = default;

    // Before start().
    virtual void setDelegate(std::shared_ptr<UpdaterDelegate> delegate) = 0;
    // Begins the scheduled checks, when they are on; once.
    virtual void start() = 0;
    // A check that the person asks for: shows what it finds, and also that it finds nothing.
    virtual void checkForUpdates() = 0;
    [[nodiscard]] virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool checks) = 0;
};

} // namespace karto
