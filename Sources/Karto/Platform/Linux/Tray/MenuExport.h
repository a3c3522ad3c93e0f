#pragma once
// A menu as other programs see it over the bus: lines with numbers, which they name when one is clicked.
// Changed lines get numbers that were never used before, and those of the menu before stay good, so that a
// click never means another line than the person saw.

#include "Karto/Platform/Menu.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace karto {

class MenuExport {
public:
    // The number of the menu itself.
    static constexpr std::int32_t root = 0;

    // Takes over the menu's actions; true when a person sees a difference.
    bool update(Menu menu);

    // Counts the changes.
    [[nodiscard]] std::uint32_t revision() const { return revision_; }

    [[nodiscard]] const Menu& lines() const { return current_.lines; }

    // The number of a line by its place in the menu.
    [[nodiscard]] std::int32_t number(std::size_t place) const {
        return current_.first + static_cast<std::int32_t>(place);
    }

    // Null for a number that stands for no line.
    [[nodiscard]] const MenuItem* find(std::int32_t number) const;

private:
    struct Generation {
        Menu lines;
        std::int32_t first = root + 1;
    };

    static const MenuItem* find(const Generation& generation, std::int32_t number);

    Generation current_;
    Generation previous_;
    std::uint32_t revision_ = 0;
};

// The text with which a bus menu shows it as it is: an underscore would mark a mnemonic.
std::string exportedLabel(const std::string& text);

} // namespace karto
