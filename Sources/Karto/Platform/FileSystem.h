#pragma once
// The files that the program reads and writes. Paths are absolute. An error's message is a sentence for a
// person, without the path.

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <string>
#include <string_view>

namespace karto {

struct FileError {
    enum class Kind : std::uint8_t { notFound, tooLarge, other };

    Kind kind = Kind::other;
    std::string message;

    bool operator==(const FileError&) const = default;
};

template<typename Value>
using FileResult = std::expected<Value, FileError>;

// A file open for writing at its end.
class AppendFile {
public:
    virtual ~AppendFile() = default;

    // Bytes from the start of the file to the place of the next write.
    virtual FileResult<std::uint64_t> offset() = 0;
    virtual FileResult<void> write(std::string_view bytes) = 0;
};

class FileSystem {
public:
    virtual ~FileSystem() = default;

    // The path with every symbolic link on the way resolved, also that of a dangling link; unchanged when the
    // links lead in a circle.
    virtual std::string resolvingLinks(const std::string& path) = 0;

    // Whether something stands at the path itself; a dangling link counts.
    virtual bool exists(const std::string& path) = 0;

    // The whole file; refused beyond maximumBytes, and for anything but a regular file.
    virtual FileResult<std::string> read(const std::string& path, std::size_t maximumBytes) = 0;

    // The folder and all that are missing above it.
    virtual FileResult<void> createDirectories(const std::string& path) = 0;

    // Opens for appending; creates a missing file that only its owner may read and write.
    virtual FileResult<std::unique_ptr<AppendFile>> openForAppending(const std::string& path) = 0;

    // Replaces the file as a whole: whoever reads it, and whatever happens, finds the old bytes or the new
    // ones. Keeps the permissions of a file that stands there, and its owner as far as allowed; a new one may
    // be read by everyone and written by its owner, less what the umask takes away. The data is on disk when
    // it returns.
    virtual FileResult<void> writeAtomically(const std::string& path, std::string_view bytes) = 0;

    virtual FileResult<void> rename(const std::string& from, const std::string& to) = 0;
    virtual FileResult<void> remove(const std::string& path) = 0;
};

} // namespace karto
