#pragma once
// The program under test on a private desktop, and its check log.

#include "Support/KeyPresser.h"
#include "Support/PrivateDesktop.h"

#include <optional>
#include <string>
#include <string_view>

namespace karto::desktop {

// Two layouts for Studio and Tower. Ring: 1 the left half of Studio, 2 and 3 the right half's top and bottom,
// 4 the lower half of Tower and 5 its upper half.
extern const std::string sampleConfiguration;

class LogReader {
public:
    // Stands at the end of what is there.
    explicit LogReader(std::filesystem::path path)
        : path_(std::move(path)) {
        rest();
    }

    // The next unread line that holds `text`; the lines before it are passed over. Absent when none comes.
    std::optional<std::string> next(std::string_view text, std::chrono::milliseconds timeout = patience);

    // Everything unread.
    std::string rest();

private:
    std::filesystem::path path_;
    std::size_t read_ = 0;
};

// What the log says about a command that had a destination.
struct Outcome {
    Rect target;
    // Nothing when it could not be read back.
    Rect result;
    bool accepted = false;

    static std::optional<Outcome> in(const std::string& line);
};

class KartoProcess {
public:
    // Starts the program, or another build of it; does not wait for it.
    explicit KartoProcess(PrivateDesktop& desktop, const Environment& changes = {},
                          const std::filesystem::path& program = programPath());

    static std::filesystem::path programPath();

    // The banner, or throws.
    std::string waitForBanner();

    [[nodiscard]] ChildProcess& process() { return process_; }

    [[nodiscard]] LogReader& log() { return log_; }

    static std::filesystem::path logPath(const PrivateDesktop& desktop);
    static std::filesystem::path configurationPath(const PrivateDesktop& desktop);
    static void writeConfiguration(const PrivateDesktop& desktop, const std::string& text);

private:
    LogReader log_;
    ChildProcess process_;
};

} // namespace karto::desktop
