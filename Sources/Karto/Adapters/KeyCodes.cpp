#include "Karto/Adapters/KeyCodes.h"

#include "Karto/Platform/HotKeyCenter.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace karto {

namespace {

constexpr std::array<std::pair<std::string_view, std::uint32_t>, 34> namedKeys{{
    {"a", 0},      {"b", 11},
    {"c", 8},      {"d", 2},
    {"e", 14},     {"f", 3},
    {"g", 5},      {"h", 4},
    {"i", 34},     {"j", 38},
    {"k", 40},     {"l", 37},
    {"m", 46},     {"n", 45},
    {"o", 31},     {"p", 35},
    {"q", 12},     {"r", 15},
    {"s", 1},      {"t", 17},
    {"u", 32},     {"v", 9},
    {"w", 13},     {"x", 7},
    {"y", 16},     {"z", 6},
    {"left", 123}, {"right", 124},
    {"up", 126},   {"down", 125},
    {"space", 49}, {"return", 36},
    {"tab", 48},   {"escape", escapeKeyCode},
}};

struct ModifierCode {
    ModifierSet modifier;
    std::uint32_t hotKeyMask = 0;
    std::uint32_t flag = 0;
};

constexpr std::array<ModifierCode, 4> modifierCodes{{
    {.modifier = ModifierSet::shift, .hotKeyMask = HotKeyMask::shift, .flag = ModifierBits::shift},
    {.modifier = ModifierSet::command, .hotKeyMask = HotKeyMask::command, .flag = ModifierBits::command},
    {.modifier = ModifierSet::control, .hotKeyMask = HotKeyMask::control, .flag = ModifierBits::control},
    {.modifier = ModifierSet::option, .hotKeyMask = HotKeyMask::option, .flag = ModifierBits::option},
}};

} // namespace

std::optional<std::uint32_t> carbonKeyCode(const CommandKey& key) {
    const auto* const found =
        std::ranges::find(namedKeys, key.name(), [](const auto& named) { return named.first; });
    return found == namedKeys.end() ? std::nullopt : std::optional(found->second);
}

std::uint32_t carbonFlags(ModifierSet modifiers) {
    std::uint32_t mask = 0;
    for (const ModifierCode& code : modifierCodes) {
        mask |= modifiers.contains(code.modifier) ? code.hotKeyMask : 0;
    }
    return mask;
}

ModifierSet modifierSet(ModifierFlags flags) {
    ModifierSet held;
    for (const ModifierCode& code : modifierCodes) {
        held = (flags.bits & code.flag) != 0 ? held | code.modifier : held;
    }
    return held;
}

} // namespace karto
