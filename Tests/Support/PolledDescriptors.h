#pragma once
// A watch of descriptors that calls back when the test says so.

#include "Karto/Platform/DescriptorWatch.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>

namespace karto::testing {

class PolledDescriptors final : public DescriptorWatch {
public:
    Registration watch(int descriptor, std::function<void()> onReadable) override;

    // Waits until there is something to read, but no longer than that, and calls back once for each
    // descriptor that has. False when there was nothing.
    bool dispatch(std::chrono::milliseconds atMost = std::chrono::milliseconds(0));

private:
    std::map<int, std::shared_ptr<const std::function<void()>>> callbacks_;
};

} // namespace karto::testing
