// Reads a configuration from any bytes. Nothing may crash; what reads and is valid must survive being written
// and read again.

#include "KartoCore/Config.h"
#include "KartoCore/ConfigReading.h"
#include "KartoCore/TOMLWriter.h"
#include "KartoCore/ZoneResolver.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using namespace karto;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// What is left of a configuration once it was written: keys that are their command's default are not.
KartoConfig withoutDefaultKeys(KartoConfig config) {
    if (!config.hotkeys || !config.hotkeys->keys) {
        return config;
    }
    auto& keys = *config.hotkeys->keys;
    for (const auto& [command, key] : CommandKey::defaults()) {
        const auto entry = keys.find(command.caseName());
        if (entry != keys.end() && entry->second == key.name()) {
            keys.erase(entry);
        }
    }
    if (keys.empty()) {
        config.hotkeys->keys.reset();
    }
    return config;
}

void askEverything(const KartoConfig& config) {
    const auto zones = config.zones();
    for (const ZoneConfig& zone : zones) {
        require(zone.order >= 1 && static_cast<std::size_t>(zone.order) <= zones.size());
    }
    const auto valid = config.validate();
    require(valid.has_value() || !message(valid.error()).empty());
    require(!valid || (config.modifierSet() && config.commandKeys() && config.overlayAppearance()));
    for (const KartoCommand& command : KartoCommand::configurable) {
        require(config.hotkeys || !config.hasCommandKeyOverride(command));
    }
    std::vector<DisplayInfo> displays;
    displays.reserve(config.displays.size());
    for (const DisplayLayout& layout : config.displays) {
        displays.push_back({.name = layout.name, .frame = {.x = 0, .y = 0, .width = 1920, .height = 1080}});
    }
    require(ZoneResolver::resolve(config, displays).size() <= zones.size());
    require(ZoneResolver::collisions(config, displays).size() <= displays.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    const auto config = readConfig(bytes);
    if (!config) {
        require(!config.error().describe().empty());
        return 0;
    }
    askEverything(*config);
    if (!config->validate()) {
        return 0;
    }
    const std::string text = TOMLWriter::write(*config);
    const auto again = readConfig(text);
    require(again.has_value() && *again == withoutDefaultKeys(*config));
    require(TOMLWriter::write(*again) == text);
    return 0;
}
