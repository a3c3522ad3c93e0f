#pragma once
// Versions of packages, ordered as the system's package installer orders them.

#include <compare>
#include <string_view>

namespace karto::PackageVersion {

// [epoch:]version[-revision], short, and beginning with a digit.
bool isValid(std::string_view version);

// Both valid. Different texts can be the same version, as "1.0" and "1.00" are.
std::weak_ordering compare(std::string_view a, std::string_view b);

} // namespace karto::PackageVersion
