#pragma once
// Which build of the program this is.

#include "Karto/Updates/UpdateCourse.h"

#include <optional>
#include <string>
#include <string_view>

namespace karto::AppInfo {

// That of its package.
std::string_view version();

// Where its updates come from; absent in a build that was not told.
std::optional<UpdateSource> updateSource();

// Absent in a build that was not bundled.
std::optional<std::string_view> commit();
std::optional<std::string_view> buildDate();

// For the About panel.
std::string buildDescription(std::optional<std::string_view> buildDate = AppInfo::buildDate(),
                             std::optional<std::string_view> commit = AppInfo::commit());

} // namespace karto::AppInfo
