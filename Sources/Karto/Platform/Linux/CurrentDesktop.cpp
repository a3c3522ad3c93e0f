#include "Karto/Platform/Linux/CurrentDesktop.h"

#include <cstdlib>
#include <sstream>

namespace karto {

std::vector<std::string> currentDesktopNames() {
    const char* names = std::getenv("XDG_CURRENT_DESKTOP"); // NOLINT(concurrency-mt-unsafe)
    std::istringstream stream(names != nullptr ? names : "");
    std::vector<std::string> found;
    for (std::string name; std::getline(stream, name, ':');) {
        found.push_back(name);
    }
    return found;
}

} // namespace karto
