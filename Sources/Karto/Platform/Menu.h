#pragma once
// A menu as a plain value: its lines from top to bottom.

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace karto {

struct MenuItem {
    // Shown as it is: no character of it marks a mnemonic.
    std::string text = {}; // NOLINT(readability-redundant-member-init)
    bool isEnabled = true;
    // Absent for a line that is not switched on and off.
    std::optional<bool> isChecked = std::nullopt;
    // A line between groups, with nothing else to it.
    bool isSeparator = false;
    // The key that stands for the item together with the desktop's command modifier; empty without one.
    std::string keyEquivalent = {}; // NOLINT(readability-redundant-member-init)
    // Empty for a line that only tells something.
    std::function<void()> action = nullptr;

    // Whether a person sees no difference.
    [[nodiscard]] bool looksLike(const MenuItem& other) const {
        return text == other.text && isEnabled == other.isEnabled && isChecked == other.isChecked &&
               isSeparator == other.isSeparator && keyEquivalent == other.keyEquivalent;
    }
};

using Menu = std::vector<MenuItem>;

} // namespace karto
