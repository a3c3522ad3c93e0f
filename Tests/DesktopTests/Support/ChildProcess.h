#pragma once
// A program started by a test, in a process group of its own. The whole group is killed with the object, and
// with the test program should that die first.

#include "Support/Waiting.h"

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace karto::desktop {

// Complete: nothing else is inherited.
using Environment = std::map<std::string, std::string>;

struct Exit {
    // Exactly one of the two is present.
    std::optional<int> status;
    std::optional<int> signal;

    bool operator==(const Exit&) const = default;
};

class ChildProcess {
public:
    // Standard output goes to `log` + ".out", standard error to `log` + ".err".
    ChildProcess(const std::vector<std::string>& arguments, const Environment& environment,
                 std::filesystem::path log);
    ~ChildProcess();
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&&) = delete;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t pid() const { return pid_; }

    [[nodiscard]] bool isAlive();

    // To every process of the group.
    void signal(int number) const;

    // Absent when the program is still running at the end of the time.
    std::optional<Exit> waitForExit(std::chrono::milliseconds timeout = patience);

    [[nodiscard]] std::string output() const;
    [[nodiscard]] std::string errors() const;

private:
    pid_t pid_ = 0;
    std::optional<Exit> exit_;
    std::filesystem::path log_;
};

std::string contentsOf(const std::filesystem::path& path);

} // namespace karto::desktop
