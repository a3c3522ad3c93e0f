#pragma once
// The way that a path takes through folders and links.

#include <string>
#include <vector>

namespace karto {

// Every place that an absolute path passes, in order: folders, links, the folders that the links lead
// through, and last the place where it ends, which need not exist. Each is named by a path without links
// before its last part. A path whose links lead in a circle passes no place but itself.
std::vector<std::string> placesOnTheWay(const std::string& path);

} // namespace karto
