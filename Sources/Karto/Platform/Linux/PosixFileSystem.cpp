#include "Karto/Platform/Linux/PosixFileSystem.h"

#include "Karto/Platform/Descriptor.h"
#include "Karto/Platform/Linux/PathWalk.h"
#include "Karto/Platform/Linux/PosixCalls.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace karto {

namespace {

using posix::describe;
using posix::uninterrupted;

constexpr mode_t newFileMode = 0644;
constexpr mode_t privateMode = 0600;
constexpr mode_t permissionBits = 0777;

std::unexpected<FileError> failure(int errorNumber = errno) {
    return std::unexpected(FileError{
        .kind = errorNumber == ENOENT ? FileError::Kind::notFound : FileError::Kind::other,
        .message = describe(errorNumber),
    });
}

std::unexpected<FileError> notARegularFile(mode_t mode) {
    return std::unexpected(FileError{
        .kind = FileError::Kind::other,
        .message = S_ISDIR(mode) ? "it is a folder, not a file" : "it is not a regular file",
    });
}

Descriptor open(const std::string& path, int flags, mode_t mode = 0) {
    return Descriptor(
        uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode); }));
}

FileResult<void> writeAll(const Descriptor& file, std::string_view bytes) {
    return posix::writeAll(file, bytes) ? FileResult<void>() : failure();
}

// Absent when nothing stands there.
FileResult<std::optional<struct stat>> replaceableFile(const std::string& path) {
    struct stat status{};
    if (::stat(path.c_str(), &status) != 0) {
        return errno == ENOENT ? FileResult<std::optional<struct stat>>(std::nullopt) : failure();
    }
    // Renaming over a device or a pipe would destroy it.
    if (!S_ISREG(status.st_mode)) {
        return notARegularFile(status.st_mode);
    }
    return status;
}

constexpr std::size_t uniquePartLength = 16;

std::string temporaryPrefix(const std::filesystem::path& target) {
    return fmt::format(".{}.karto-", target.filename().native());
}

FileResult<std::string> temporaryPath(const std::filesystem::path& target) {
    std::uint64_t unique = 0;
    if (uninterrupted([&] { return ::getrandom(&unique, sizeof unique, 0); }) < 0) {
        return failure();
    }
    const auto name = fmt::format("{}{:0{}x}", temporaryPrefix(target), unique, uniquePartLength);
    return (target.parent_path() / name).native();
}

bool isTemporaryName(std::string_view name, std::string_view prefix) {
    return name.size() == prefix.size() + uniquePartLength && name.starts_with(prefix) &&
           name.find_first_not_of("0123456789abcdef", prefix.size()) == std::string_view::npos;
}

// Longer than any write takes. Another Karto, on another display, may be writing the same file.
constexpr std::int64_t leftOverAge = 60;

// Removes what is older than the file that has just been made: by the file system's own clock, so that it
// does not matter how the computer's is set.
void removeLeftOvers(const std::filesystem::path& target, const Descriptor& newFile) {
    struct stat now{};
    if (::fstat(newFile.number(), &now) != 0) {
        return;
    }
    const auto prefix = temporaryPrefix(target);
    std::error_code error;
    for (std::filesystem::directory_iterator entry(target.parent_path(), error), end; !error && entry != end;
         entry.increment(error)) {
        struct stat status{};
        if (isTemporaryName(entry->path().filename().native(), prefix) &&
            ::lstat(entry->path().c_str(), &status) == 0 &&
            now.st_mtim.tv_sec - status.st_mtim.tv_sec > leftOverAge) {
            ::unlink(entry->path().c_str());
        }
    }
}

// Owner first: a change of owner takes permissions away.
FileResult<void> keepAttributes(const Descriptor& file, const struct stat& existing) {
    if (::fchown(file.number(), existing.st_uid, existing.st_gid) != 0) {
        // Only root gives files away, but a group of one's own can be kept. Otherwise the file is simply
        // ours.
        std::ignore = ::fchown(file.number(), static_cast<uid_t>(-1), existing.st_gid);
    }
    if (::fchmod(file.number(), existing.st_mode & permissionBits) != 0) {
        return failure();
    }
    return {};
}

FileResult<void> fill(const Descriptor& file, std::string_view bytes,
                      const std::optional<struct stat>& existing) {
    if (existing) {
        if (const auto kept = keepAttributes(file, *existing); !kept) {
            return kept;
        }
    }
    if (const auto written = writeAll(file, bytes); !written) {
        return written;
    }
    if (uninterrupted([&] { return ::fsync(file.number()); }) != 0) {
        return failure();
    }
    return {};
}

// Makes the new name outlast a power failure. The file has been replaced by then, whole, so that a file
// system that cannot do this is no reason to report a failed write.
void syncFolder(const std::string& path) {
    if (const auto folder = open(path, O_RDONLY | O_DIRECTORY)) {
        uninterrupted([&] { return ::fsync(folder.number()); });
    }
}

class PosixAppendFile final : public AppendFile {
public:
    explicit PosixAppendFile(Descriptor file)
        : file_(std::move(file)) {}

    FileResult<std::uint64_t> offset() override {
        const auto end = ::lseek(file_.number(), 0, SEEK_END);
        return end < 0 ? FileResult<std::uint64_t>(failure()) : static_cast<std::uint64_t>(end);
    }

    FileResult<void> write(std::string_view bytes) override { return writeAll(file_, bytes); }

private:
    Descriptor file_;
};

} // namespace

std::string PosixFileSystem::resolvingLinks(const std::string& path) { return placesOnTheWay(path).back(); }

bool PosixFileSystem::exists(const std::string& path) {
    struct stat status{};
    return ::lstat(path.c_str(), &status) == 0;
}

FileResult<std::string> PosixFileSystem::read(const std::string& path, std::size_t maximumBytes) {
    // A pipe without a writer must not keep us waiting.
    const auto file = open(path, O_RDONLY | O_NONBLOCK);
    struct stat status{};
    if (!file || ::fstat(file.number(), &status) != 0) {
        return failure();
    }
    if (!S_ISREG(status.st_mode)) {
        return notARegularFile(status.st_mode);
    }
    // The size is asked for while reading, not before: the file may be growing.
    std::string bytes;
    std::array<char, 65'536> chunk{};
    while (bytes.size() <= maximumBytes) {
        const auto length = uninterrupted([&] { return ::read(file.number(), chunk.data(), chunk.size()); });
        if (length < 0) {
            return failure();
        }
        if (length == 0) {
            return bytes;
        }
        bytes.append(chunk.data(), static_cast<std::size_t>(length));
    }
    return std::unexpected(FileError{
        .kind = FileError::Kind::tooLarge,
        .message = fmt::format("it is larger than {} bytes", maximumBytes),
    });
}

FileResult<void> PosixFileSystem::createDirectories(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) {
        return failure(error.value());
    }
    return {};
}

FileResult<std::unique_ptr<AppendFile>> PosixFileSystem::openForAppending(const std::string& path) {
    auto file = open(path, O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK, privateMode);
    if (!file) {
        return failure();
    }
    return std::make_unique<PosixAppendFile>(std::move(file));
}

FileResult<void> PosixFileSystem::writeAtomically(const std::string& path, std::string_view bytes) {
    const auto existing = replaceableFile(path);
    if (!existing) {
        return std::unexpected(existing.error());
    }
    const auto temporary = temporaryPath(path);
    if (!temporary) {
        return std::unexpected(temporary.error());
    }
    const auto file = open(*temporary, O_WRONLY | O_CREAT | O_EXCL, *existing ? privateMode : newFileMode);
    if (!file) {
        return failure();
    }
    removeLeftOvers(path, file);
    auto written = fill(file, bytes, *existing);
    if (written) {
        written = rename(*temporary, path);
    }
    if (!written) {
        ::unlink(temporary->c_str());
        return written;
    }
    syncFolder(std::filesystem::path(path).parent_path());
    return {};
}

FileResult<void> PosixFileSystem::rename(const std::string& from, const std::string& to) {
    if (::rename(from.c_str(), to.c_str()) != 0) {
        return failure();
    }
    return {};
}

FileResult<void> PosixFileSystem::remove(const std::string& path) {
    if (::unlink(path.c_str()) != 0) {
        return failure();
    }
    return {};
}

} // namespace karto
