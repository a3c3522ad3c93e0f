#include "Support/ChildProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <utility>

namespace karto::desktop {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

void redirect(int descriptor, const char* path) {
    const int file = open(path, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0 || dup2(file, descriptor) < 0) {
        _exit(127);
    }
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const Environment& environment,
                           std::filesystem::path log)
    : log_(std::move(log)) {
    std::vector<std::string> argumentTexts = arguments;
    std::vector<std::string> environmentTexts;
    for (const auto& [name, value] : environment) {
        environmentTexts.push_back(std::string(name).append("=").append(value));
    }
    const std::vector<char*> argumentPointers = pointersTo(argumentTexts);
    const std::vector<char*> environmentPointers = pointersTo(environmentTexts);
    const std::string outPath = log_.string() + ".out";
    const std::string errorPath = log_.string() + ".err";

    pid_ = fork();
    if (pid_ < 0) {
        throw std::runtime_error("cannot start " + arguments.front());
    }
    if (pid_ == 0) {
        setpgid(0, 0);
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        redirect(STDIN_FILENO, "/dev/null");
        redirect(STDOUT_FILENO, outPath.c_str());
        redirect(STDERR_FILENO, errorPath.c_str());
        execvpe(argumentPointers.front(), argumentPointers.data(), environmentPointers.data());
        _exit(127);
    }
    setpgid(pid_, pid_);
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : pid_(std::exchange(other.pid_, 0))
    , exit_(other.exit_)
    , log_(std::move(other.log_)) {}

ChildProcess::~ChildProcess() {
    if (pid_ == 0) {
        return;
    }
    signal(SIGKILL);
    if (!exit_) {
        waitpid(pid_, nullptr, 0);
    }
}

bool ChildProcess::isAlive() {
    int status = 0;
    if (exit_ || waitpid(pid_, &status, WNOHANG) == 0) {
        return !exit_;
    }
    exit_ = WIFSIGNALED(status) ? Exit{.status = {}, .signal = WTERMSIG(status)}
                                : Exit{.status = WEXITSTATUS(status), .signal = {}};
    return false;
}

void ChildProcess::signal(int number) const { kill(-pid_, number); }

std::optional<Exit> ChildProcess::waitForExit(std::chrono::milliseconds timeout) {
    eventually([this] { return !isAlive(); }, timeout);
    return exit_;
}

std::string ChildProcess::output() const { return contentsOf(log_.string() + ".out"); }

std::string ChildProcess::errors() const { return contentsOf(log_.string() + ".err"); }

std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace karto::desktop
