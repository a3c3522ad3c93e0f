#include "KartoCore/ModifierSet.h"

#include <algorithm>
#include <array>
#include <bit>

namespace karto {

namespace {

struct Member {
    ModifierSet modifier;
    std::string_view name;
    std::string_view glyph;
};

constexpr std::array<Member, 4> members{{
    {.modifier = ModifierSet::shift, .name = "shift", .glyph = "⇧"},
    {.modifier = ModifierSet::command, .name = "command", .glyph = "⌘"},
    {.modifier = ModifierSet::control, .name = "control", .glyph = "⌃"},
    {.modifier = ModifierSet::option, .name = "option", .glyph = "⌥"},
}};

} // namespace

std::expected<ModifierSet, ModifierSet::UnknownModifier>
ModifierSet::named(std::span<const std::string> names) {
    ModifierSet set;
    for (const std::string& name : names) {
        const auto* const member = std::ranges::find(members, name, &Member::name);
        if (member == members.end()) {
            return std::unexpected(UnknownModifier{name});
        }
        set = set | member->modifier;
    }
    return set;
}

int ModifierSet::count() const { return std::popcount(static_cast<unsigned>(rawValue_)); }

std::vector<std::string_view> ModifierSet::names() const {
    std::vector<std::string_view> names;
    for (const Member& member : members) {
        if (contains(member.modifier)) {
            names.push_back(member.name);
        }
    }
    return names;
}

std::string ModifierSet::glyphs() const {
    std::string glyphs;
    for (const Member& member : members) {
        if (contains(member.modifier)) {
            glyphs += member.glyph;
        }
    }
    return glyphs;
}

} // namespace karto
