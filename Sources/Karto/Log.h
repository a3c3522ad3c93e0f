#pragma once
// The check log: one line for everything that the program did, or the reason why it did nothing.

#include "Karto/Platform/FileSystem.h"
#include "Karto/Platform/WallClock.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace karto {

class CheckLog {
public:
    virtual ~CheckLog() = default;

    // Appends one line: a short lower-case context, ": ", and a sentence. Never fails.
    virtual void append(std::string_view message) = 0;
};

// The log file, kept open. Beyond maximumBytes it becomes the one old log and a new file begins. A line that
// cannot be written is lost; the next one tries again from the start.
class FileCheckLog final : public CheckLog {
public:
    static constexpr std::uint64_t maximumBytes = 1'048'576;
    // Below the home directory.
    static constexpr std::string_view relativePath = "Library/Logs/Karto/karto-check.log";

    // path: the log file, absolute.
    FileCheckLog(std::string path, FileSystem& files, const WallClock& clock);

    void append(std::string_view message) override;

private:
    AppendFile* openFile();
    void rotate();

    std::string path_;
    FileSystem& files_;
    const WallClock& clock_;
    std::unique_ptr<AppendFile> file_;
};

} // namespace karto
