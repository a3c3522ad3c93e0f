#pragma once
// Moments as TOML has them: a date and a time with its distance from UTC.

#include <toml++/toml.h>

#include <chrono>
#include <optional>
#include <string>

namespace karto {

// Absent when the node is anything else, a local time or one of another age included.
std::optional<std::chrono::sys_seconds> momentOf(const toml::node& node);

std::string tomlText(std::chrono::sys_seconds moment);

} // namespace karto
