#include "Support/KartoProcess.h"

#include <fmt/format.h>

#include <cstdio>
#include <fstream>

namespace karto::desktop {

const std::string sampleConfiguration = R"([profile]
name = "Home"

[[display]]
name = "Studio"
orientation = "landscape"
split = { axis = "vertical", at = 0.5, first = {}, second = { split = { axis = "horizontal", at = 0.5, first = {}, second = {} } } }

[[display]]
name = "Tower"
orientation = "portrait"
split = { axis = "horizontal", at = 0.5, first = {}, second = {} }
)";

std::optional<std::string> LogReader::next(std::string_view text, std::chrono::milliseconds timeout) {
    std::optional<std::string> found;
    eventually(
        [&] {
            const std::string all = contentsOf(path_);
            for (std::size_t end = 0; !found && (end = all.find('\n', read_)) != std::string::npos;) {
                const std::string line = all.substr(read_, end - read_);
                read_ = end + 1;
                if (line.contains(text)) {
                    found = line;
                }
            }
            return found.has_value();
        },
        timeout);
    return found;
}

std::string LogReader::rest() {
    const std::string all = contentsOf(path_);
    const std::string unread = all.substr(std::min(read_, all.size()));
    read_ = all.size();
    return unread;
}

std::optional<Outcome> Outcome::in(const std::string& line) {
    const std::size_t start = line.find("target (");
    if (start == std::string::npos) {
        return {};
    }
    Outcome outcome;
    Rect& target = outcome.target;
    Rect& result = outcome.result;
    // A line of this program's own making: eight numbers, four without a result, or a test that fails.
    // NOLINTNEXTLINE(cert-err34-c)
    const int numbers = std::sscanf(
        line.c_str() + start, "target (%lf, %lf, %lf, %lf), result (%lf, %lf, %lf, %lf)", &target.x,
        &target.y, &target.width, &target.height, &result.x, &result.y, &result.width, &result.height);
    outcome.accepted = numbers == 8 && !line.contains("WINDOW DID NOT ACCEPT THE FRAME");
    return numbers >= 4 ? std::optional(outcome) : std::nullopt;
}

std::filesystem::path KartoProcess::logPath(const PrivateDesktop& desktop) {
    return desktop.home() / "Library/Logs/Karto/karto-check.log";
}

std::filesystem::path KartoProcess::configurationPath(const PrivateDesktop& desktop) {
    return desktop.home() / ".config/karto/config.toml";
}

void KartoProcess::writeConfiguration(const PrivateDesktop& desktop, const std::string& text) {
    std::ofstream(configurationPath(desktop), std::ios::binary) << text;
}

std::filesystem::path KartoProcess::programPath() { return KARTO_PROGRAM; }

KartoProcess::KartoProcess(PrivateDesktop& desktop, const Environment& changes,
                           const std::filesystem::path& program)
    : log_(logPath(desktop))
    , process_(desktop.start({program.native()}, changes)) {}

std::string KartoProcess::waitForBanner() {
    constexpr std::string_view lastLine = "Move a window to its zone\n";
    require("the banner", [&] { return process_.output().ends_with(lastLine) || !process_.isAlive(); });
    if (!process_.isAlive()) {
        throw std::runtime_error("karto ended: " + process_.errors());
    }
    return process_.output();
}

} // namespace karto::desktop
