#pragma once
// The files of this computer.

#include "Karto/Platform/FileSystem.h"

namespace karto {

class PosixFileSystem : public FileSystem {
public:
    std::string resolvingLinks(const std::string& path) override;
    bool exists(const std::string& path) override;
    FileResult<std::string> read(const std::string& path, std::size_t maximumBytes) override;
    FileResult<void> createDirectories(const std::string& path) override;
    FileResult<std::unique_ptr<AppendFile>> openForAppending(const std::string& path) override;

    // Writes a temporary file beside the target and gives it the target's name. One that a crash left behind
    // is removed by a later write of the same file, once it is older than a minute.
    FileResult<void> writeAtomically(const std::string& path, std::string_view bytes) override;

    FileResult<void> rename(const std::string& from, const std::string& to) override;
    FileResult<void> remove(const std::string& path) override;
};

} // namespace karto
