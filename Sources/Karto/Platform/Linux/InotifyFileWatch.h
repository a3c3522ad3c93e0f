#pragma once
// Changes of one file, from the kernel's inotify. Nothing wakes up while nothing changes.

#include "Karto/Platform/DescriptorWatch.h"
#include "Karto/Platform/FileWatch.h"

namespace karto {

class InotifyFileWatch final : public FileWatch {
public:
    explicit InotifyFileWatch(DescriptorWatch& descriptors)
        : descriptors_(descriptors) {}

    std::optional<Registration> watch(const std::string& path, std::function<void()> onChange) override;

private:
    DescriptorWatch& descriptors_;
};

} // namespace karto
