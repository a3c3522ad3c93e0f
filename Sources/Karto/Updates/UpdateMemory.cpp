#include "Karto/Updates/UpdateMemory.h"

#include "Karto/Updates/PackageVersion.h"
#include "Karto/Updates/TomlTime.h"
#include "KartoCore/TomlDocument.h"
#include "KartoCore/TomlTables.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>

namespace karto {

namespace {

constexpr std::chrono::hours interval{24};
constexpr std::chrono::hours firstRetry{1};
// After these the retries are a day apart.
constexpr int manyFailures = 5;

std::optional<std::chrono::sys_seconds> moment(const toml::table& table, std::string_view key) {
    const auto* const node = table.get(key);
    return node != nullptr ? momentOf(*node) : std::nullopt;
}

std::string line(std::string_view key, std::optional<std::chrono::sys_seconds> moment) {
    return moment ? fmt::format("{} = {}\n", key, tomlText(*moment)) : std::string();
}

} // namespace

UpdateMemory readUpdateMemory(std::string_view text) {
    const auto document = parseTomlDocument(text);
    if (!document) {
        return {};
    }
    const auto& table = (*document)->root;
    const auto failures = table["failures"].value_exact<std::int64_t>().value_or(0);
    const auto skipped = table["skippedVersion"].value_exact<std::string>().value_or("");
    return {.checksAutomatically = table["checksAutomatically"].value_exact<bool>().value_or(true),
            .lastCheck = moment(table, "lastCheck"),
            .failures = static_cast<int>(std::clamp<std::int64_t>(failures, 0, manyFailures)),
            .skippedVersion = PackageVersion::isValid(skipped) ? skipped : std::string(),
            .newestFeed = moment(table, "newestFeed")};
}

std::string writeUpdateMemory(const UpdateMemory& memory) {
    return fmt::format("checksAutomatically = {}\nfailures = {}\nskippedVersion = \"{}\"\n{}{}",
                       memory.checksAutomatically, memory.failures, memory.skippedVersion,
                       line("lastCheck", memory.lastCheck), line("newestFeed", memory.newestFeed));
}

std::chrono::system_clock::time_point nextCheck(const UpdateMemory& memory,
                                                std::chrono::system_clock::time_point now) {
    if (!memory.lastCheck || *memory.lastCheck > now) {
        return now;
    }
    const bool retriesSoon = memory.failures > 0 && memory.failures < manyFailures;
    return *memory.lastCheck + (retriesSoon ? firstRetry * (1 << (memory.failures - 1)) : interval);
}

} // namespace karto
