#include "Karto/Platform/Linux/SessionBus.h"

#include <cstdlib>
#include <utility>

namespace karto {

SessionBus::SessionBus(DescriptorWatch& descriptors) {
    sd_bus* bus = nullptr;
    if (sd_bus_open_user(&bus) < 0) {
        return;
    }
    bus_.reset(bus);
    state_ = State::connecting;
    // A limit would be a timer, and an answer that comes late is as good.
    sd_bus_set_method_call_timeout(bus, UINT64_MAX);
    // Writing is left to the next reading: what this program says is short, and the bus takes it at once or
    // has stopped answering as well.
    readable_ = descriptors.watch(sd_bus_get_fd(bus), [this] { pump(); });
}

Registration SessionBus::observeState(std::function<void()> onChange) {
    return observers_.add(std::move(onChange));
}

void SessionBus::hideWhenSilent(std::chrono::milliseconds bound) {
    settle(bound);
    if (state_ == State::connecting) {
        // Without an address the toolkit would start a bus of its own.
        setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null", 1); // NOLINT(concurrency-mt-unsafe)
    }
}

void SessionBus::settle(std::chrono::milliseconds bound) {
    const auto end = std::chrono::steady_clock::now() + bound;
    while (state_ == State::connecting) {
        pump();
        const auto left =
            std::chrono::duration_cast<std::chrono::microseconds>(end - std::chrono::steady_clock::now());
        if (state_ != State::connecting || left.count() <= 0 ||
            sd_bus_wait(get(), static_cast<std::uint64_t>(left.count())) <= 0) {
            break;
        }
    }
}

void SessionBus::pump() {
    // Whoever is called back may wait for the bus in turn.
    if (std::exchange(isPumping_, true)) {
        return;
    }
    int outcome = 1;
    while (state_ != State::absent && outcome > 0) {
        outcome = sd_bus_process(get(), nullptr);
        const bool isGone = outcome < 0 || sd_bus_is_open(get()) <= 0;
        const auto state = isGone                       ? State::absent
                           : sd_bus_is_ready(get()) > 0 ? State::connected
                                                        : State::connecting;
        if (state != state_) {
            state_ = state;
            if (isGone) {
                readable_.reset();
            }
            observers_.notify();
        }
    }
    isPumping_ = false;
}

} // namespace karto
