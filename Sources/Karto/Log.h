#pragma once
// The check log: one line for everything that the program did, or the reason why it did nothing.

#include "Karto/Platform/FileSystem.h"
#include "Karto/Platform/WallClock.h"

#include <cstdint>
#include <functional>
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

    // path: the log file, absolute. onProblem hears one sentence when lines begin to be lost, and no more
    // until one was written again.
    FileCheckLog(std::string path, FileSystem& files, const WallClock& clock,
                 std::function<void(std::string_view)> onProblem);

    void append(std::string_view message) override;

private:
    FileResult<void> write(std::string_view line);
    FileResult<void> open();
    void rotate();

    std::string path_;
    FileSystem& files_;
    const WallClock& clock_;
    std::function<void(std::string_view)> onProblem_;
    // Null until the first line, after a rotation and after a failure.
    std::unique_ptr<AppendFile> file_;
    bool isLosingLines_ = false;
};

} // namespace karto
