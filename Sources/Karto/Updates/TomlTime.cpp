#include "Karto/Updates/TomlTime.h"

#include <fmt/chrono.h>

namespace karto {

namespace {

// What the clock can be compared with.
constexpr int firstYear = 1971;
constexpr int lastYear = 2200;

} // namespace

std::optional<std::chrono::sys_seconds> momentOf(const toml::node& node) {
    using namespace std::chrono;
    const auto value = node.value_exact<toml::date_time>();
    if (!value || !value->offset || value->date.year < firstYear || value->date.year > lastYear) {
        return std::nullopt;
    }
    const year_month_day day{year(value->date.year), month(value->date.month),
                             std::chrono::day(value->date.day)};
    return sys_days(day) + hours(value->time.hour) + minutes(value->time.minute) +
           seconds(value->time.second) - minutes(value->offset->minutes);
}

std::string tomlText(std::chrono::sys_seconds moment) {
    return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(std::chrono::system_clock::to_time_t(moment)));
}

} // namespace karto
