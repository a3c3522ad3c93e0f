#include "Karto/Platform/Linux/Updates/PackageCache.h"

#include "Karto/Platform/Linux/PosixCalls.h"

#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>
#include <tuple>

namespace karto {

namespace {

using posix::uninterrupted;

constexpr mode_t ownFolder = 0700;
constexpr mode_t ownFile = 0600;
constexpr mode_t permissionBits = 0777;
constexpr auto unfinished = ".part";

std::unexpected<std::string> failure(std::string_view what) {
    const auto cause = posix::describe();
    return std::unexpected(fmt::format("{} — {}", what, cause));
}

std::unexpected<std::string> writeFailure() { return failure("the package cannot be stored"); }

} // namespace

std::string PackageCache::folderOf(const std::string& home) {
    const char* const cache = std::getenv("XDG_CACHE_HOME"); // NOLINT(concurrency-mt-unsafe)
    return (cache != nullptr && *cache == '/' ? std::string(cache) : home + "/.cache") + "/karto/updates";
}

std::expected<std::uint64_t, std::string> PackageCache::open(const std::string& name) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(folder_).parent_path(), error);
    if (::mkdir(folder_.c_str(), ownFolder) != 0 && errno != EEXIST) {
        return failure(fmt::format("the folder {} cannot be made", folder_));
    }
    if (const auto folder = openFolder(); !folder) {
        return std::unexpected(folder.error());
    }
    name_ = name;
    const auto part = name + unfinished;
    // Finished by a former try.
    ::renameat(opened_.number(), name.c_str(), opened_.number(), part.c_str());
    removeAllBut(part);
    file_ = Descriptor(::openat(opened_.number(), part.c_str(),
                                O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_CLOEXEC, ownFile));
    struct stat status{};
    if (!file_ || ::fstat(file_.number(), &status) != 0) {
        return writeFailure();
    }
    if (!S_ISREG(status.st_mode)) {
        return std::unexpected(fmt::format("{}/{} is not a regular file", folder_, part));
    }
    return static_cast<std::uint64_t>(status.st_size);
}

// Whoever could put a link or a folder of theirs in its place could exchange the package.
std::expected<void, std::string> PackageCache::openFolder() {
    if (opened_) {
        return {};
    }
    Descriptor folder(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status{};
    if (!folder || ::fstat(folder.number(), &status) != 0) {
        return errno == ELOOP || errno == ENOTDIR
                   ? std::unexpected(fmt::format("{} is not a folder of its own, or a link", folder_))
                   : failure(fmt::format("the folder {} cannot be opened", folder_));
    }
    if (status.st_uid != ::geteuid()) {
        return std::unexpected(fmt::format("the folder {} belongs to somebody else", folder_));
    }
    if ((status.st_mode & permissionBits) != ownFolder && ::fchmod(folder.number(), ownFolder) != 0) {
        return failure(fmt::format("the folder {} cannot be closed to others", folder_));
    }
    if (::flock(folder.number(), LOCK_EX | LOCK_NB) != 0) {
        return std::unexpected("another Karto is updating at the moment");
    }
    opened_ = std::move(folder);
    return {};
}

void PackageCache::removeAllBut(const std::string& name) const {
    Descriptor copy(::fcntl(opened_.number(), F_DUPFD_CLOEXEC, 0));
    if (!copy) {
        return;
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::fdopendir(copy.number()), ::closedir);
    if (!listing) {
        return;
    }
    // The listing closes it.
    std::ignore = copy.release();
    ::rewinddir(listing.get());
    while (const auto* const entry = ::readdir(listing.get())) { // NOLINT(concurrency-mt-unsafe)
        if (name != static_cast<const char*>(entry->d_name)) {
            ::unlinkat(opened_.number(), static_cast<const char*>(entry->d_name), 0);
        }
    }
}

std::expected<void, std::string> PackageCache::append(std::string_view bytes) {
    if (!posix::writeAll(file_, bytes)) {
        return writeFailure();
    }
    return {};
}

std::expected<void, std::string> PackageCache::startOver() {
    if (::ftruncate(file_.number(), 0) != 0) {
        return writeFailure();
    }
    return {};
}

std::expected<void, std::string> PackageCache::read(const std::function<void(std::string_view)>& onBytes) {
    std::array<char, 65'536> chunk{};
    for (off_t offset = 0;;) {
        const auto length =
            uninterrupted([&] { return ::pread(file_.number(), chunk.data(), chunk.size(), offset); });
        if (length < 0) {
            return failure("the package cannot be read");
        }
        if (length == 0) {
            return {};
        }
        onBytes({chunk.data(), static_cast<std::size_t>(length)});
        offset += length;
    }
}

std::expected<std::string, std::string> PackageCache::finish() {
    const auto part = name_ + unfinished;
    if (uninterrupted([&] { return ::fsync(file_.number()); }) != 0 ||
        ::renameat(opened_.number(), part.c_str(), opened_.number(), name_.c_str()) != 0) {
        return writeFailure();
    }
    file_ = Descriptor(-1);
    return folder_ + '/' + name_;
}

void PackageCache::close() {
    file_ = Descriptor(-1);
    opened_ = Descriptor(-1);
}

void PackageCache::clear() {
    if (openFolder()) {
        removeAllBut({});
    }
    close();
}

} // namespace karto
