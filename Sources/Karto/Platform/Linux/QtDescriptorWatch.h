#pragma once
// File descriptors on Qt's event loop.

#include "Karto/Platform/DescriptorWatch.h"

namespace karto {

class QtDescriptorWatch final : public DescriptorWatch {
public:
    Registration watch(int descriptor, std::function<void()> onReadable) override;
};

} // namespace karto
