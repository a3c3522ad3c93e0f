#pragma once
// A set of the four modifier keys.

#include <expected>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace karto {

class ModifierSet {
public:
    // A name that is none of "shift", "command", "control", "option".
    struct UnknownModifier {
        std::string name;

        bool operator==(const UnknownModifier&) const = default;
    };

    static const ModifierSet shift;
    static const ModifierSet command;
    static const ModifierSet control;
    static const ModifierSet option;
    static const ModifierSet allModifiers;

    constexpr ModifierSet() = default;

    constexpr explicit ModifierSet(int rawValue)
        : rawValue_(rawValue) {}

    // The set of the named modifiers; the first unknown name is the error. Repeated names are harmless.
    static std::expected<ModifierSet, UnknownModifier> named(std::span<const std::string> names);

    [[nodiscard]] constexpr int rawValue() const { return rawValue_; }

    [[nodiscard]] constexpr bool empty() const { return rawValue_ == 0; }

    [[nodiscard]] constexpr bool contains(ModifierSet other) const {
        return (rawValue_ & other.rawValue_) == other.rawValue_;
    }

    [[nodiscard]] int count() const;

    // Both in the fixed order shift, command, control, option.
    [[nodiscard]] std::vector<std::string_view> names() const;
    [[nodiscard]] std::string glyphs() const;

    constexpr ModifierSet operator|(ModifierSet other) const {
        return ModifierSet(rawValue_ | other.rawValue_);
    }

    constexpr ModifierSet operator&(ModifierSet other) const {
        return ModifierSet(rawValue_ & other.rawValue_);
    }

    constexpr ModifierSet operator-(ModifierSet other) const {
        return ModifierSet(rawValue_ & ~other.rawValue_);
    }

    bool operator==(const ModifierSet&) const = default;

private:
    int rawValue_ = 0;
};

inline constexpr ModifierSet ModifierSet::shift{1};
inline constexpr ModifierSet ModifierSet::command{2};
inline constexpr ModifierSet ModifierSet::control{4};
inline constexpr ModifierSet ModifierSet::option{8};
inline constexpr ModifierSet ModifierSet::allModifiers{15};

} // namespace karto
