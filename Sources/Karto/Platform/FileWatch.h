#pragma once
// Changes of one file.

#include "Karto/Platform/Registration.h"

#include <functional>
#include <optional>
#include <string>

namespace karto {

class FileWatch {
public:
    virtual ~FileWatch() = default;

    // Calls back after the file that the path leads to now was written, renamed or deleted, or the path came
    // to lead elsewhere: another file was put in its place, or a link or folder on the way replaced. Several
    // changes may come as one. Absent when there is no file to watch. The callback may end the registration.
    virtual std::optional<Registration> watch(const std::string& path, std::function<void()> onChange) = 0;
};

} // namespace karto
