#include "KartoCore/LayoutCheck.h"

#include "KartoCore/Utf8.h"
#include "KartoCore/ZoneResolver.h"

#include <fmt/format.h>

#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace karto {

namespace {

using namespace LayoutWarnings;

// What binds a layout to a display.
using Binding = std::pair<std::string_view, Orientation>;

std::string text(const DisplayNotConnected& warning) {
    return fmt::format("\"{}\" ({}) is not connected right now. Its zones are kept.", warning.name,
                       rawName(warning.orientation));
}

std::string text(const DuplicateDisplayName& warning) {
    return fmt::format("{} displays report the name \"{}\" ({}). Zones for it all resolve onto one of them.",
                       warning.count, warning.name, rawName(warning.orientation));
}

} // namespace

std::string message(const LayoutWarning& warning) {
    return std::visit([](const auto& each) { return text(each); }, warning);
}

std::vector<LayoutWarning> LayoutCheck::warnings(const KartoConfig& config,
                                                 std::span<const DisplayInfo> displays) {
    std::set<Binding> connected;
    for (const DisplayInfo& display : displays) {
        connected.emplace(display.name, display.orientation());
    }
    // Names that read the same stand together, however their accents are spelled. Only the very same name
    // binds.
    std::map<std::pair<std::string, Orientation>, std::string_view> absent;
    for (const DisplayLayout& layout : config.displays) {
        if (!connected.contains({layout.name, layout.orientation})) {
            absent.try_emplace({composed(layout.name), layout.orientation}, layout.name);
        }
    }
    std::vector<LayoutWarning> warnings;
    warnings.reserve(absent.size());
    for (const auto& [key, name] : absent) {
        warnings.emplace_back(DisplayNotConnected{.name = std::string(name), .orientation = key.second});
    }
    for (const auto& [name, orientation, count] : ZoneResolver::collisions(config, displays)) {
        warnings.emplace_back(DuplicateDisplayName{.name = name, .orientation = orientation, .count = count});
    }
    return warnings;
}

} // namespace karto
