#include "Karto/Platform/X11/Windows/Client.h"

#include <string_view>

namespace karto::x11 {

namespace {

// A number for a class of windows that names no process. Negative, and apart from all window identifiers.
std::int32_t classNumber(std::string_view className) {
    std::uint32_t hash = 2166136261U;
    for (const char character : className) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 16777619U;
    }
    return -static_cast<std::int32_t>(0x4000'0000U | (hash & 0x3FFF'FFFFU));
}

} // namespace

std::int32_t applicationNumber(xcb_window_t window, const WindowFacts& facts) {
    if (facts.pid > 0) {
        return facts.pid;
    }
    if (facts.clientLeader != XCB_WINDOW_NONE) {
        return -static_cast<std::int32_t>(facts.clientLeader);
    }
    return facts.className.empty() ? -static_cast<std::int32_t>(window) : classNumber(facts.className);
}

} // namespace karto::x11
