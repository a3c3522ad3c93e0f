#include "KartoCore/TOMLWriter.h"

#include "KartoCore/NumberText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace karto::TOMLWriter {

namespace {

constexpr std::string_view header =
    R"(# Karto zone layout.
#
# This file is written by the Karto settings window and rewritten whole
# every time something changes there. Hand edits are read back and shown
# in the window, but comments you add here do not survive the next save.
#
# Each [[display]] is a tree. A table is a split when it has a "split"
# key, and a zone otherwise:
#
#   name        — the display's name, as reported by the system
#   orientation — landscape or portrait; matched together with the name
#   split       — divides this table's region into "first" and "second"
#     axis      — "vertical" cuts left/right, "horizontal" cuts top/bottom
#     at        — where the cut sits, 0.0...1.0, fraction from the near edge
#     first     — the near part (left of a vertical cut, top of a horizontal one)
#     second    — the far part
#     both "first" and "second" must be present, even when empty — an
#     empty table is a zone with no pinned number:
#       [display.split.first]
#   order       — a zone's position in the ring, only present when it was
#                 dragged there by hand; otherwise the ring follows the
#                 tree itself, first part before second

[profile]
)";

template<typename... Parts>
void line(std::string& text, fmt::format_string<Parts...> format, Parts&&... parts) {
    fmt::format_to(std::back_inserter(text), format, std::forward<Parts>(parts)...);
    text += '\n';
}

// `string` is UTF-8. Whatever TOML lets stand in a string stands as it is.
std::string quoted(std::string_view string) {
    std::string text = "\"";
    for (const char c : string) {
        switch (c) {
        case '\r': text += "\\r"; continue;
        case '\n': text += "\\n"; continue;
        case '\t': text += "\\t"; continue;
        case '"': text += "\\\""; continue;
        case '\\': text += "\\\\"; continue;
        default: break;
        }
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) {
            fmt::format_to(std::back_inserter(text), "\\u{:04X}", byte);
        } else {
            text += c;
        }
    }
    return text + '"';
}

void writePin(const ZoneLeaf& zone, std::string& text) {
    if (zone.pinnedOrder) {
        line(text, "order = {}", *zone.pinnedOrder);
    }
}

void writeNode(const LayoutNode& node, const std::string& tablePath, std::string& text);

void writeSplit(const Split& split, const std::string& tablePath, std::string& text) {
    line(text, "\n[{}.split]", tablePath);
    line(text, "axis = {}", quoted(rawName(split.axis)));
    line(text, "at = {}", shortestDecimal(split.at));
    writeNode(split.first, tablePath + ".split.first", text);
    writeNode(split.second, tablePath + ".split.second", text);
}

void writeNode(const LayoutNode& node, const std::string& tablePath, std::string& text) {
    if (const Split* const split = node.split()) {
        writeSplit(*split, tablePath, text);
        return;
    }
    line(text, "\n[{}]", tablePath);
    writePin(*node.zone(), text);
}

void writeDisplay(const DisplayLayout& layout, std::string& text) {
    text += "\n[[display]]\n";
    line(text, "name = {}", quoted(layout.name));
    line(text, "orientation = {}", quoted(rawName(layout.orientation)));
    if (const Split* const split = layout.root.split()) {
        writeSplit(*split, "display", text);
        return;
    }
    writePin(*layout.root.zone(), text);
}

bool isDefault(const std::string& commandName, const std::string& keyName) {
    const auto command = KartoCommand::named(commandName);
    return command && CommandKey::defaults().at(*command).name() == keyName;
}

void writeHotkeys(const HotkeysConfig& hotkeys, std::string& text) {
    std::vector<std::string> modifiers;
    std::ranges::transform(hotkeys.modifiers, std::back_inserter(modifiers), quoted);
    line(text, "\n[hotkeys]\nmodifiers = [{}]", fmt::join(modifiers, ", "));

    std::string entries;
    for (const auto& [commandName, keyName] : hotkeys.keys.value_or(std::map<std::string, std::string>())) {
        if (!isDefault(commandName, keyName)) {
            line(entries, "  {} = {}", commandName, quoted(keyName));
        }
    }
    if (!entries.empty()) {
        text += "\n  [hotkeys.keys]\n" + entries;
    }
}

void writeNumber(std::string_view key, const std::optional<double>& value, std::string& text) {
    if (value) {
        line(text, "{} = {}", key, shortestDecimal(*value));
    }
}

void writeOverlay(const OverlayConfig& overlay, std::string& text) {
    text += "\n[overlay]\n";
    writeNumber("delay", overlay.delay, text);
    writeNumber("backgroundOpacity", overlay.backgroundOpacity, text);
    writeNumber("numberSize", overlay.numberSize, text);
    if (overlay.color) {
        line(text, "color = {}", quoted(*overlay.color));
    }
}

} // namespace

std::string write(const KartoConfig& config) {
    std::string text(header);
    line(text, "name = {}", quoted(config.profileName));
    for (const DisplayLayout& layout : config.displays) {
        writeDisplay(layout, text);
    }
    if (config.hotkeys) {
        writeHotkeys(*config.hotkeys, text);
    }
    if (config.overlay) {
        writeOverlay(*config.overlay, text);
    }
    return text;
}

} // namespace karto::TOMLWriter
