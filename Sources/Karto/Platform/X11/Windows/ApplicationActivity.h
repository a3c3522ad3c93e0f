#pragma once
// Whether the active window is one of this program's own.

#include "Karto/Platform/Accessibility.h"
#include "Karto/Platform/ApplicationActivity.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <sys/types.h>

namespace karto::x11 {

class ApplicationActivity final : public karto::ApplicationActivity {
public:
    // `accessibility` tells which application the active window belongs to, and follows the same connection.
    ApplicationActivity(Connection& connection, karto::Accessibility& accessibility, Scheduler& scheduler,
                        pid_t ownProcess);

    [[nodiscard]] bool isActive() const override { return isActive_; }

    Registration observe(std::function<void(bool isActive)> onChange) override;

private:
    void note(const xcb_generic_event_t& event);
    [[nodiscard]] bool readActive() const;
    void change(bool isActive);

    Connection& connection_;
    karto::Accessibility& accessibility_;
    Scheduler& scheduler_;
    pid_t ownProcess_;
    bool isActive_ = false;
    Observers<bool> observers_;
    Registration rootEvents_;
    Registration events_;
    // Under way while the program seems to be inactive and may be so for a moment only.
    Registration leaving_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
