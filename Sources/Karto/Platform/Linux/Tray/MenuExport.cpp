#include "Karto/Platform/Linux/Tray/MenuExport.h"

#include <algorithm>
#include <utility>

namespace karto {

bool MenuExport::update(Menu menu) {
    if (std::ranges::equal(menu, current_.lines, &MenuItem::looksLike)) {
        current_.lines = std::move(menu);
        return false;
    }
    const auto end = number(current_.lines.size());
    previous_ = std::exchange(current_, {.lines = std::move(menu), .first = end});
    ++revision_;
    return true;
}

const MenuItem* MenuExport::find(std::int32_t number) const {
    const auto* line = find(current_, number);
    return line != nullptr ? line : find(previous_, number);
}

const MenuItem* MenuExport::find(const Generation& generation, std::int32_t number) {
    const auto place = static_cast<std::int64_t>(number) - generation.first;
    const bool isThere = 0 <= place && place < std::ssize(generation.lines);
    return isThere ? &generation.lines[static_cast<std::size_t>(place)] : nullptr;
}

std::string exportedLabel(const std::string& text) {
    std::string label;
    for (const char character : text) {
        label.append(character == '_' ? 2 : 1, character);
    }
    return label;
}

} // namespace karto
