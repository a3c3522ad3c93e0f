#pragma once
// What is remembered of updates from one run of the program to the next, and when the next check is due by
// it.

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace karto {

struct UpdateMemory {
    // Below the person's folder for state.
    static constexpr std::string_view relativePath = "karto/updates.toml";
    static constexpr std::size_t maximumBytes = 65'536;

    bool checksAutomatically = true;
    // When the last check began, whoever asked for it.
    std::optional<std::chrono::sys_seconds> lastCheck;
    // How many checks in a row have failed. One that never ended counts as failed.
    int failures = 0;
    // The version that the person does not want to hear of; empty when there is none.
    std::string skippedVersion;
    // The date of the latest feed.
    std::optional<std::chrono::sys_seconds> newestFeed;

    bool operator==(const UpdateMemory&) const = default;
};

// Whatever is missing or wrong in the text is as if it had never been remembered.
UpdateMemory readUpdateMemory(std::string_view text);
std::string writeUpdateMemory(const UpdateMemory& memory);

// A day after the last check; sooner after one that failed, but later with every failure. A last check that
// is yet to come tells that the clock was wrong: then a check is due now.
std::chrono::system_clock::time_point nextCheck(const UpdateMemory& memory,
                                                std::chrono::system_clock::time_point now);

} // namespace karto
