#include "Karto/Platform/X11/Displays/DisplayNames.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <set>
#include <tuple>

namespace karto::x11 {

namespace {

// Smaller for the one that is named earlier.
auto rank(const MonitorLabels& monitor) {
    const auto serial = monitor.edid.serial.value_or(MonitorSerial());
    // The length first: it puts numbers that are written as texts into their order.
    return std::tuple(!monitor.edid.serial.has_value(), serial.number, serial.text.size(), serial.text,
                      monitor.output);
}

} // namespace

std::vector<std::string> displayNames(std::span<const MonitorLabels> monitors) {
    std::vector<std::string> names;
    std::vector<std::size_t> order;
    for (const MonitorLabels& monitor : monitors) {
        order.push_back(names.size());
        names.push_back(monitor.edid.productName.value_or(monitor.output));
    }
    std::ranges::sort(order, {}, [&](std::size_t index) { return rank(monitors[index]); });
    // A number must not lead to the name of another model either.
    std::set<std::string> taken(names.begin(), names.end());
    std::set<std::string> given;
    for (const auto index : order) {
        const std::string plain = names[index];
        if (plain.empty() || given.insert(plain).second) {
            continue;
        }
        for (int number = 2; !taken.insert(names[index]).second; ++number) {
            names[index] = fmt::format("{} ({})", plain, number);
        }
    }
    return names;
}

} // namespace karto::x11
