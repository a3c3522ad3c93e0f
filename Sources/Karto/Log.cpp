#include "Karto/Log.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <tuple>
#include <utility>

namespace karto {

FileCheckLog::FileCheckLog(std::string path, FileSystem& files, const WallClock& clock,
                           std::function<void(std::string_view)> onProblem)
    : path_(std::move(path))
    , files_(files)
    , clock_(clock)
    , onProblem_(std::move(onProblem)) {}

void FileCheckLog::append(std::string_view message) {
    const auto written =
        write(fmt::format("[{:%Y-%m-%dT%H:%M:%SZ}] {}\n", fmt::gmtime(clock_.now()), message));
    if (written) {
        isLosingLines_ = false;
        return;
    }
    file_.reset();
    if (!std::exchange(isLosingLines_, true)) {
        onProblem_(fmt::format("cannot write the check log {} — {}", path_, written.error().message));
    }
}

FileResult<void> FileCheckLog::write(std::string_view line) {
    if (auto opened = open(); !opened) {
        return opened;
    }
    const auto offset = file_->offset();
    if (!offset) {
        return std::unexpected(offset.error());
    }
    if (*offset > maximumBytes) {
        rotate();
        if (auto opened = open(); !opened) {
            return opened;
        }
    }
    return file_->write(line);
}

FileResult<void> FileCheckLog::open() {
    if (file_) {
        return {};
    }
    if (auto created = files_.createDirectories(path_.substr(0, path_.rfind('/'))); !created) {
        return created;
    }
    auto opened = files_.openForAppending(path_);
    if (!opened) {
        return std::unexpected(std::move(opened.error()));
    }
    file_ = std::move(*opened);
    return {};
}

void FileCheckLog::rotate() {
    file_.reset();
    const std::string oldPath = path_ + ".old";
    // Where either fails the log grows on; a line is worth more than its limit.
    std::ignore = files_.remove(oldPath);
    std::ignore = files_.rename(path_, oldPath);
}

} // namespace karto
