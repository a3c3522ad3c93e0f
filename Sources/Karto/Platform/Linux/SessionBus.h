#pragma once
// The program's connection to the message bus of the session. Nothing here waits for the bus without a
// bound: it may be missing, late, or never answer.

#include "Karto/Platform/DescriptorWatch.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/Registration.h"

#include <systemd/sd-bus.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace karto {

struct SlotUnref {
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};

// An object, a match or a pending call on the bus, which ends with it.
using BusSlot = std::unique_ptr<sd_bus_slot, SlotUnref>;

class SessionBus {
public:
    static constexpr std::chrono::milliseconds answerBound{250};

    enum class State : std::uint8_t { connecting, connected, absent };

    // Begins to connect to the bus of the environment.
    explicit SessionBus(DescriptorWatch& descriptors);

    [[nodiscard]] State state() const { return state_; }

    // Null when there is no bus.
    [[nodiscard]] sd_bus* get() const { return bus_.get(); }

    // Called when the bus has answered, and when it turns out to be gone.
    [[nodiscard]] Registration observeState(std::function<void()> onChange);

    // The toolkit waits for the bus without a bound. Where the bus has not answered within the time, the
    // toolkit and the programs that this one starts see none from here on.
    void hideWhenSilent(std::chrono::milliseconds bound = answerBound);

private:
    struct CloseUnref {
        void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    };

    void settle(std::chrono::milliseconds bound);
    void pump();

    std::unique_ptr<sd_bus, CloseUnref> bus_;
    State state_ = State::absent;
    bool isPumping_ = false;
    Observers<> observers_;
    Registration readable_;
};

} // namespace karto
