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

    // Calls back after the file that stands at the path now was written, renamed or deleted, or another was
    // put in its place; several changes may come as one. Absent when there is no file to watch.
    virtual std::optional<Registration> watch(const std::string& path, std::function<void()> onChange) = 0;
};

} // namespace karto
