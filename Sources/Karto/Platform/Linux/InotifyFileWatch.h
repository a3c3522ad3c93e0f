#pragma once
// Changes of files, from the kernel's inotify. Nothing wakes up while nothing changes.

#include "Karto/Platform/Descriptor.h"
#include "Karto/Platform/DescriptorWatch.h"
#include "Karto/Platform/FileWatch.h"

#include <memory>
#include <set>
#include <vector>

namespace karto {

// Registrations end before the object does.
class InotifyFileWatch final : public FileWatch {
public:
    explicit InotifyFileWatch(DescriptorWatch& descriptors)
        : descriptors_(descriptors) {}

    std::optional<Registration> watch(const std::string& path, std::function<void()> onChange) override;

private:
    struct WatchedFile;

    // The kernel's numbers of the watches; none when the last place cannot be watched.
    [[nodiscard]] std::set<int> watchPlaces(const std::vector<std::string>& places) const;
    void end(const std::shared_ptr<const WatchedFile>& file);
    void reportChanges() const;

    DescriptorWatch& descriptors_;
    // One for all files, opened with the first: to close it takes the kernel about 10 ms, to remove a watch
    // from it some microseconds.
    Descriptor inotify_{-1};
    std::vector<std::shared_ptr<const WatchedFile>> files_;
    // While there are files.
    Registration readable_;
};

} // namespace karto
