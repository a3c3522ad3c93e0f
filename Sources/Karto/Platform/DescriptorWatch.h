#pragma once
// Tells when a file descriptor has something to read.

#include "Karto/Platform/Registration.h"

#include <functional>

namespace karto {

class DescriptorWatch {
public:
    virtual ~DescriptorWatch() = default;

    // Calls back from the event loop as long as there is something to read, also at the end of the stream.
    // The descriptor must stay open until the registration ends.
    [[nodiscard]] virtual Registration watch(int descriptor, std::function<void()> onReadable) = 0;
};

} // namespace karto
