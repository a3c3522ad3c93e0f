#pragma once
// Packages in a folder that only its owner may look into, and one running program at a time writes to.

#include "Karto/Platform/Descriptor.h"
#include "Karto/Platform/UpdateStore.h"

namespace karto {

class PackageCache final : public UpdateStore {
public:
    // folder: absolute; made when it is first needed.
    explicit PackageCache(std::string folder)
        : folder_(std::move(folder)) {}

    // In the cache folder of the person whose home this is.
    static std::string folderOf(const std::string& home);

    std::expected<std::uint64_t, std::string> open(const std::string& name) override;
    std::expected<void, std::string> append(std::string_view bytes) override;
    std::expected<void, std::string> startOver() override;
    std::expected<void, std::string> read(const std::function<void(std::string_view)>& onBytes) override;
    std::expected<std::string, std::string> finish() override;
    void close() override;
    void clear() override;

private:
    std::expected<void, std::string> openFolder();
    void removeAllBut(const std::string& name) const;

    std::string folder_;
    // Locked while it is open.
    Descriptor opened_{-1};
    std::string name_;
    Descriptor file_{-1};
};

} // namespace karto
