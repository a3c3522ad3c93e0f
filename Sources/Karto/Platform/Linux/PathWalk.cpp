#include "Karto/Platform/Linux/PathWalk.h"

#include <deque>
#include <filesystem>
#include <system_error>

namespace karto {

namespace {

// As many as the kernel follows.
constexpr int maximumLinks = 40;

} // namespace

std::vector<std::string> placesOnTheWay(const std::string& path) {
    const std::filesystem::path start(path);
    std::deque<std::filesystem::path> ahead(start.begin(), start.end());
    std::filesystem::path here("/");
    std::vector<std::string> places{here};
    int links = 0;
    while (!ahead.empty()) {
        const auto part = std::move(ahead.front());
        ahead.pop_front();
        if (part.empty() || part == "." || part == "/") {
            continue;
        }
        if (part == "..") {
            here = here.parent_path();
            places.push_back(here);
            continue;
        }
        places.push_back(here / part);
        std::error_code error;
        const auto target = std::filesystem::read_symlink(here / part, error);
        if (error) {
            here /= part;
            continue;
        }
        if (++links > maximumLinks) {
            return {path};
        }
        ahead.insert(ahead.begin(), target.begin(), target.end());
        if (target.is_absolute()) {
            here = "/";
        }
    }
    return places;
}

} // namespace karto
