#include "Support/PolledDescriptors.h"

#include <poll.h>

#include <utility>
#include <vector>

namespace karto::testing {

Registration PolledDescriptors::watch(int descriptor, std::function<void()> onReadable) {
    callbacks_[descriptor] = std::make_shared<const std::function<void()>>(std::move(onReadable));
    return Registration([this, descriptor] { callbacks_.erase(descriptor); });
}

bool PolledDescriptors::dispatch(std::chrono::milliseconds atMost) {
    std::vector<pollfd> polled;
    polled.reserve(callbacks_.size());
    for (const auto& [descriptor, callback] : callbacks_) {
        polled.push_back({.fd = descriptor, .events = POLLIN, .revents = 0});
    }
    if (::poll(polled.data(), polled.size(), static_cast<int>(atMost.count())) <= 0) {
        return false;
    }
    for (const auto& ready : polled) {
        const auto found = callbacks_.find(ready.fd);
        if (ready.revents != 0 && found != callbacks_.end()) {
            // The callback may end its own registration.
            const auto callback = found->second;
            (*callback)();
        }
    }
    return true;
}

} // namespace karto::testing
